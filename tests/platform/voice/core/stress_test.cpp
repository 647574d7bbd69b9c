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
    const auto random_to = [&](unsigned most) { return static_cast<int>(random() % (most + 1)); };
    const std::function<void()> orders[] = {
        [&] { voice.Speak(u"One two. Three four. Five six.", SVSFlagsAsync); },
        [&] { voice.Speak(u"", SVSFlagsAsync); },
        [&] {
            purged
                = voice.Speak(u"<rate speed='5'>a b c</rate>", SVSFlagsAsync | SVSFPurgeBeforeSpeak)
                - 1;
        },
        [&] { purged = random() % 4 == 0 ? voice.Speak(u"", SVSFPurgeBeforeSpeak) : purged; },
        [&] { voice.Pause(); },
        [&] { voice.Resume(); },
        [&] { voice.set_Rate(random_to(20) - 10); },
        [&] { voice.Skip("Sentence", random_to(4) - 2); },
    };
    for (int i = 0; i < 4000; ++i) {
        const std::size_t next = random() % (std::size(orders) + 3);
        if (next < std::size(orders)) {
            orders[next]();
            continue;
        }
        bed.loop.run_posted(std::chrono::microseconds(random_to(100)));
        bed.device->advance(milliseconds(random_to(60)));
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
