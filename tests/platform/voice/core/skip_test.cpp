#include "tests/platform/voice/core/voice_bed.h"

#include <gmock/gmock.h>

namespace tessavox::voice::test {
namespace {

using testing::IsEmpty;

TEST(Skip, MovesBySentencesFromTheOneThatIsHeard)
{
    const std::vector<std::string> all{ "Sentence 0+8", "Sentence 9+4", "Sentence 14+4",
        "Sentence 19+4" };
    const std::pair<int, int> rows[] // how many, and the first sentence that is told after it
        = { { 0, 1 }, { -1, 0 }, { -9, 0 }, { 1, 2 }, { 2, 3 }, { 3, 4 }, { 99, 4 } };
    for (const bool paused : { false, true }) {
        for (const auto& [count, first] : rows) {
            VoiceBed own;
            own.voice->Speak(u"A b c d. E f. G h. I j.", SVSFlagsAsync);
            // At the first word of the second sentence, far from the next one: the device may run
            // on by its buffer before the event is here.
            ASSERT_TRUE(own.has_heard("Word", 5));
            if (paused)
                own.voice->Pause();
            EXPECT_EQ(own.voice->Skip("Sentence", count), count);
            own.listener.heard.clear();
            if (paused) {
                own.wait_until([&] { return own.device->last()->paused; });
                EXPECT_THAT(own.listener.told("Sentence Word"), IsEmpty());
                own.voice->Resume();
            }
            ASSERT_TRUE(own.has_heard("EndStream"));
            EXPECT_EQ(own.listener.told("Sentence"),
                std::vector<std::string>(all.begin() + first, all.end()))
                << count;
        }
    }
}

TEST(Skip, CountsFromWhereTheLastOneWent)
{
    const std::pair<std::vector<int>, int> rows[] // the counts, and the first sentence that is told
        = { { { 2, 1 }, 3 }, { { 2, -1 }, 1 }, { { 4, -2, 1, 1 }, 4 }, { { 99, -1 }, 5 },
              { { 99, 1 }, 6 } };
    for (const int held_at : { -1, 0, 1 }) {
        for (const auto& [counts, first] : rows) {
            VoiceBed own;
            own.voice->set_Rate(10);
            own.voice->Pause();
            own.engine->held_at = held_at; // from there on nothing is made before the last skip
            own.voice->Speak(u"Aa. Bb. Cc. Dd. Ee. Ff.", SVSFlagsAsync);
            for (const int count : counts) {
                EXPECT_EQ(own.voice->Skip("Sentence", count), count);
                own.loop.run_posted(milliseconds(2));
            }
            own.engine->held_at = -1;
            own.voice->Resume();
            ASSERT_TRUE(own.has_heard("EndStream"));
            const std::vector<Heard> told = own.listener.of("Sentence");
            EXPECT_EQ(told.size(), 6U - static_cast<std::size_t>(first));
            EXPECT_TRUE(told.empty() || told[0].first == 4 * first)
                << counts[0] << ' ' << counts[1] << ", held at " << held_at;
        }
    }
}

} // namespace
} // namespace tessavox::voice::test
