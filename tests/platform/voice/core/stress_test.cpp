// Orders at any moment, thousands of them: nothing hangs, and each stream is told from its start to
// its end, one after the other.
#include "tests/platform/voice/core/voice_bed.h"

#include <gtest/gtest.h>

#include <random>

namespace tessavox::voice::test {
namespace {

TEST(Orders, AtAnyMomentLeaveEveryStreamItsOrderAndItsEnd)
{
    VoiceBed bed;
    SpeechVoice& voice = *bed.voice;
    std::mt19937 random(1);
    std::int32_t purged = 0; // no stream up to this one is heard of any more
    std::int32_t current = 0; // the stream that has started and not ended
    std::int32_t last = 0;
    bed.listener.on_event = [&](const Heard& row) {
        EXPECT_GT(row.stream, purged);
        if (row.kind == "StartStream") {
            EXPECT_TRUE(current == 0 || current <= purged) << current << " has not ended";
            EXPECT_EQ(row.stream, std::max(purged, last) + 1);
            current = last = row.stream;
        }
        EXPECT_EQ(row.stream, current) << row.kind;
        if (row.kind == "EndStream")
            current = 0;
    };
    for (int i = 0; i < 4000; ++i) {
        switch (random() % 11) {
        case 0:
            voice.Speak(u"One two. Three four. Five six.", SVSFlagsAsync);
            break;
        case 1:
            voice.Speak(u"", SVSFlagsAsync);
            break;
        case 2:
            purged
                = voice.Speak(u"<rate speed='5'>a b c</rate>", SVSFlagsAsync | SVSFPurgeBeforeSpeak)
                - 1;
            break;
        case 3:
            if (random() % 4 == 0)
                purged = voice.Speak(u"", SVSFPurgeBeforeSpeak);
            break;
        case 4:
            voice.Pause();
            break;
        case 5:
            voice.Resume();
            break;
        case 6:
            voice.set_Rate(static_cast<int>(random() % 21) - 10);
            break;
        case 7:
            voice.Skip("Sentence", static_cast<int>(random() % 5) - 2);
            break;
        default:
            bed.loop.run_posted(std::chrono::microseconds(random() % 100));
            bed.device->advance(milliseconds(random() % 60));
        }
    }
    voice.Resume();
    const std::int32_t end = voice.Speak(u"The end.", SVSFlagsAsync);
    EXPECT_TRUE(bed.run_until([&] { return last == end && current == 0; }, milliseconds(50)));
    EXPECT_TRUE(voice.WaitUntilDone(-1));
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
        bed.device->advance(milliseconds(random() % 100));
    }
    bed.engine->held = false;
}

} // namespace
} // namespace tessavox::voice::test
