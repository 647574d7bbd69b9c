// The voice on a real sound server that stops answering and comes back.
#include "tests/platform/voice/core/voice_bed.h"
#include "tests/platform/voice/sound/sound_server_process.h"

#include <gtest/gtest.h>

#include <csignal>

namespace tessavox::voice::test {
namespace {

TEST(HangingServer, HoldsNoWordAndGetsTheSoundBack)
{
    if (!SoundServerProcess::is_installed())
        GTEST_SKIP() << "The program pulseaudio is not installed";
    const SoundServerProcess server;
    VoiceBed bed(nullptr, make_pulse_server("Tessavox"));
    std::u16string text;
    for (int i = 0; i < 1000; ++i)
        text += u"abc ";
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

} // namespace
} // namespace tessavox::voice::test
