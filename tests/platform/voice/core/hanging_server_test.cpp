// The voice on a real sound server that stops answering and comes back.
#include "tests/platform/voice/core/voice_bed.h"
#include "tests/platform/voice/sound/sound_server_process.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <future>

namespace tessavox::voice::test {
namespace {

class HangingServer : public testing::TestWithParam<bool> { };

TEST_P(HangingServer, HoldsNoWordAndGetsTheSoundBack)
{
    if (!SoundServerProcess::is_installed())
        GTEST_SKIP() << "The program pulseaudio is not installed";
    const SoundServerProcess server;
    VoiceBed bed(nullptr, make_pulse_server("Tessavox"));
    std::u16string text;
    for (int i = 0; i < 1000; ++i)
        text += u"abc ";
    const bool from_the_start = GetParam();
    if (from_the_start)
        server.signal(SIGSTOP);
    bed.voice->Speak(TextSlice(text), SVSFlagsAsync);
    ASSERT_TRUE(bed.has_heard("Word", 3));
    server.signal(SIGSTOP);
    ASSERT_TRUE(bed.has_heard("AudioOutput", 1));
    ASSERT_TRUE(bed.has_heard("Word", bed.listener.count("Word") + 5));
    EXPECT_EQ(bed.listener.count("AudioOutput"), 1);
    server.signal(SIGCONT);
    ASSERT_TRUE(bed.has_heard("AudioOutput", 2));
    ASSERT_TRUE(bed.has_heard("Word", bed.listener.count("Word") + 15));
    EXPECT_EQ(bed.listener.count("AudioOutput"), 2);
}

/// Opens nothing until it is let go.
struct StuckServer : ManualDevice {
    struct Door {
        std::atomic<bool> knocked{ false };
        std::promise<void> opens;
        std::promise<void> left;
    };
    explicit StuckServer(Door& with)
        : door(with)
    {
    }
    ~StuckServer() override { door.left.set_value(); }
    std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string& output, std::function<void()> wake) override
    {
        door.knocked = true;
        door.opens.get_future().wait();
        return ManualDevice::open(format, output, std::move(wake));
    }
    Door& door;
};

TEST(StuckServer, DoesNotHoldUpTheEndOfTheVoice)
{
    StuckServer::Door door;
    {
        VoiceBed bed(nullptr, std::make_unique<StuckServer>(door));
        bed.voice->Speak(u"abc", SVSFlagsAsync);
        ASSERT_TRUE(bed.wait_until([&] { return door.knocked.load(); }));
    }
    door.opens.set_value();
    door.left.get_future().wait();
}

INSTANTIATE_TEST_SUITE_P(InMidReading, HangingServer, testing::Bool());

} // namespace
} // namespace tessavox::voice::test
