// Orders at any moment, thousands of them: nothing hangs, and no stream loses its end.
#include "tests/platform/voice/core/voice_bed.h"

#include <gtest/gtest.h>

#include <random>

namespace tessavox::voice::test {
namespace {

TEST(Orders, AtAnyMomentLeaveAWorkingVoice)
{
    VoiceBed bed;
    std::mt19937 random(1);
    int purges = 0;
    int last_stream = 0;
    for (int i = 0; i < 4000; ++i) {
        switch (random() % 9) {
        case 0:
            last_stream = bed.voice->Speak(u"One two. Three four. Five six.", SVSFlagsAsync);
            break;
        case 1:
            last_stream = bed.voice->Speak(
                u"<rate speed='5'>a b c</rate>", SVSFlagsAsync | SVSFPurgeBeforeSpeak);
            ++purges;
            break;
        case 2:
            bed.voice->Speak(u"", SVSFPurgeBeforeSpeak);
            ++purges;
            break;
        case 3:
            bed.voice->Pause();
            break;
        case 4:
            bed.voice->Resume();
            break;
        case 5:
            bed.voice->set_Rate(static_cast<int>(random() % 21) - 10);
            break;
        case 6:
            bed.voice->Skip("Sentence", static_cast<int>(random() % 5) - 2);
            break;
        default:
            bed.loop.run_posted(std::chrono::microseconds(random() % 100));
            bed.device->advance(std::chrono::milliseconds(random() % 60));
        }
    }
    bed.voice->Resume();
    last_stream = bed.voice->Speak(u"The end.", SVSFlagsAsync);
    ASSERT_TRUE(bed.run_until(
        [&] {
            return !bed.listener.heard.empty() && bed.listener.heard.back().kind == "EndStream"
                && bed.listener.heard.back().stream == last_stream;
        },
        std::chrono::milliseconds(50)));
    EXPECT_TRUE(bed.voice->WaitUntilDone(-1));
    EXPECT_GT(purges, 100);
}

TEST(Orders, AVoiceCanEndAtAnyMoment)
{
    std::mt19937 random(2);
    VoiceBed bed;
    for (int i = 0; i < 300; ++i) {
        const auto voice = bed.service->create_voice(bed.listener);
        voice->Speak(u"One two three. Four five six.", SVSFlagsAsync);
        if (i % 3 == 0)
            voice->Pause();
        bed.engine->held = i % 5 == 0;
        bed.loop.run_posted(std::chrono::microseconds(random() % 300));
        bed.device->advance(std::chrono::milliseconds(random() % 100));
    }
    bed.engine->held = false;
}

TEST(Orders, EveryStreamThatIsNotPurgedEnds)
{
    VoiceBed bed;
    std::mt19937 random(3);
    constexpr int streams = 200;
    for (int i = 0; i < streams; ++i) {
        bed.voice->Speak(i % 4 == 0 ? u"" : u"a. b. c.", SVSFlagsAsync);
        bed.voice->Skip("Sentence", static_cast<int>(random() % 4) - 1);
        bed.voice->set_Rate(static_cast<int>(random() % 21) - 10);
        if (i % 7 == 0)
            bed.voice->Pause();
        bed.device->advance(std::chrono::milliseconds(random() % 60));
        bed.loop.run_posted(std::chrono::microseconds(random() % 100));
        bed.voice->Resume();
    }
    ASSERT_TRUE(bed.run_until(
        [&] { return bed.listener.count("EndStream") == streams; }, std::chrono::milliseconds(60)));
    EXPECT_EQ(bed.listener.count("StartStream"), streams);
}

} // namespace
} // namespace tessavox::voice::test
