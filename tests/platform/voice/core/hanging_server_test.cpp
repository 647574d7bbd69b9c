// The voice on a real sound server that stops answering and comes back.
#include "tests/platform/voice/core/local_engines.h"
#include "tests/platform/voice/core/voice_bed.h"
#include "tests/platform/voice/sound/sound_server_process.h"

#include <gtest/gtest.h>

#include <csignal>

namespace tessavox::voice::test {
namespace {

class HangingServer : public testing::TestWithParam<bool> {
protected:
    void SetUp() override
    {
        if (!SoundServerProcess::is_installed())
            GTEST_SKIP() << "The program pulseaudio is not installed";
        server = std::make_unique<SoundServerProcess>();
        std::vector<std::unique_ptr<Engine>> engines;
        engines.push_back(std::make_unique<ToneEngine>());
        SpeechServiceOptions options;
        options.post = [this](std::function<void()> call) { loop.post(std::move(call)); };
        service = make_speech_service(std::move(options),
            std::make_shared<LocalEngines>(std::make_shared<VoiceCatalog>(std::move(engines))));
        voice = service->create_voice(listener);
    }
    bool comes(const std::string& kind, int count)
    {
        return eventually([&] {
            loop.run_posted();
            return listener.count(kind) >= count;
        });
    }

    std::unique_ptr<SoundServerProcess> server;
    MessageLoop loop;
    Listener listener;
    std::unique_ptr<SpeechService> service;
    std::unique_ptr<SpeechVoice> voice;
};

TEST_P(HangingServer, HoldsNoWordAndGetsTheSoundBack)
{
    const bool from_the_start = GetParam();
    std::u16string text;
    for (int i = 0; i < 1000; ++i)
        text += u"abc ";
    if (from_the_start)
        server->signal(SIGSTOP);
    voice->Speak(TextSlice(text), SVSFlagsAsync);
    ASSERT_TRUE(comes("Word", 3));
    server->signal(SIGSTOP);
    ASSERT_TRUE(comes("AudioOutput", 1));
    ASSERT_TRUE(comes("Word", listener.count("Word") + 5));
    EXPECT_EQ(listener.count("AudioOutput"), 1);
    server->signal(SIGCONT);
    ASSERT_TRUE(comes("AudioOutput", 2));
    ASSERT_TRUE(comes("Word", listener.count("Word") + 15));
    EXPECT_EQ(listener.count("AudioOutput"), 2);
}

INSTANTIATE_TEST_SUITE_P(InMidReading, HangingServer, testing::Bool());

} // namespace
} // namespace tessavox::voice::test
