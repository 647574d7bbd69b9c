#include "platform/voice/sound_ring.h"
#include "platform/voice/text/utterance_parts.h"
#include "platform/voice/utterance_events.h"
#include "tests/platform/voice/text/reading.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace tessavox::voice {
namespace {

Utterance first_of(const char16_t* text)
{
    return std::get<Utterance>(read_all(text)[0]);
}

/// A rendering of 1000 frames at 1 kHz with a word at each of `frames`.
Rendering rendering_of(std::vector<std::uint64_t> frames)
{
    Rendering rendering;
    rendering.sample_rate = 1000;
    rendering.samples.assign(1000, 10'000);
    for (const std::uint64_t frame : frames)
        rendering.words.push_back({ static_cast<std::uint32_t>(rendering.words.size()), frame });
    return rendering;
}

TEST(DividedUtterance, BreaksAtAMarkIfOneIsFarEnoughOn)
{
    const std::tuple<const char16_t*, std::size_t, std::size_t> rows[] = {
        // most, and the token
        { u"one two three", 20, 0 },
        { u"one two three four", 12, 1 },
        { u"one, two three four five", 16, 1 },
        { u"a, two three four five six", 20, 2 }, // the comma comes too soon
        { u"one", 2, 0 },
        { u"<pron sym='w ah n'>one two three four</pron>", 12, 0 },
    };
    for (const auto& [text, most, division] : rows)
        EXPECT_EQ(division_of(first_of(text), most), division) << to_utf8(text);
}

TEST(DividedUtterance, BothPartsTogetherAreTheWhole)
{
    Utterance whole = first_of(u"one <context id='x'><volume level='50'/>two <bookmark mark='b'/>"
                               u"three</context> <volume level='20'/>four");
    whole.bookmarks.push_back({ 4, "c" });
    ASSERT_EQ(marked_text(whole), "one x(%50 two {b}three) %20 four{c}");
    const Utterance start = start_of(whole, 2);
    const Utterance rest = rest_of(whole, 2);
    EXPECT_EQ(marked_text(start), "one x(%50 two )");
    EXPECT_EQ(marked_text(rest), "x({b}%50 three) %20 four{c}") << "what was in force goes on";
    ASSERT_EQ(start.tokens.size() + rest.tokens.size(), whole.tokens.size());
    EXPECT_EQ(rest.text.substr(rest.tokens[0].begin, rest.tokens[0].length), u"three");
    EXPECT_EQ(rest.tokens[1].source_begin, whole.tokens[3].source_begin);
    EXPECT_TRUE(start.sentence && !rest.sentence) << "a sentence is told once";
    EXPECT_TRUE(!start.ends_sentence && rest.ends_sentence);
}

TEST(UtteranceEvents, ComeByTheirFramesAndABookmarkBeforeItsWord)
{
    Utterance utterance = first_of(u"one <bookmark mark='two'/>two three");
    utterance.bookmarks.push_back({ 3, "end" });
    Rendering rendering = rendering_of({ 0, 400, 600 });
    rendering.words[2].silent = 1;
    rendering.phones = { { 0, 900, 1, 1, 0 }, { 900, 100, 0, 0, 0 } };
    std::uint64_t sequence = 0;
    std::string told;
    for (const StreamEvent& event : events_of(
             utterance, rendering, -1, 0, [](std::uint64_t at) { return at; }, sequence)) {
        if (const auto* bookmark = std::get_if<BookmarkReached>(&event.happening))
            told += bookmark->name + "@" + std::to_string(event.frame) + " ";
        if (const auto* word = std::get_if<WordStarted>(&event.happening))
            told += std::to_string(word->position) + "@" + std::to_string(event.frame) + " ";
    }
    EXPECT_EQ(told, "0@0 two@400 26@400 end@900 ") << "nothing is heard of the third word";
}

TEST(UtteranceEvents, ALevelHoldsFromItsWordOnWithoutAClick)
{
    const Utterance utterance
        = first_of(u"<volume level='50'/>one <volume level='0'/>two <volume level='100'/>three");
    Rendering rendering = rendering_of({ 0, 400, 700 });
    apply_levels(utterance, rendering);
    const auto& samples = rendering.samples;
    EXPECT_EQ((std::vector{ samples[0], samples[389], samples[400], samples[689], samples[700],
                  samples[999] }),
        (std::vector<std::int16_t>{ 5'000, 5'000, 0, 0, 10'000, 10'000 }));
    for (std::size_t at = 1; at < samples.size(); ++at)
        ASSERT_LE(std::abs(samples[at] - samples[at - 1]), 1'000) << at;

    rendering = rendering_of({ 0, 3, 3 });
    apply_levels(utterance, rendering);
    EXPECT_EQ(rendering.samples[3], 10'000) << "words closer than a ramp";
}

TEST(SoundRing, FadesToRestWhereItIsCut)
{
    constexpr std::size_t align = 4;
    SoundRing ring(PcmFormat{ 8000, 16, 2 }, 100);
    ring.append(std::vector<std::byte>(50 * align, std::byte{ 0x40 }));
    ring.truncate(51, 16); // has not come yet
    ring.truncate(40, 16);
    EXPECT_EQ(ring.end(), 40U);
    std::vector<std::byte> out;
    ring.take(100, out);
    ASSERT_EQ(out.size(), 40 * align);
    std::int16_t samples[80];
    std::memcpy(samples, out.data(), sizeof samples);
    EXPECT_EQ(samples[46], samples[0]);
    EXPECT_EQ(samples[79], 0);
    for (std::size_t right = 49; right < 80; right += 2)
        EXPECT_LT(samples[right], samples[right - 2]) << right;
    ring.append(std::vector<std::byte>(8 * align));
    ring.restart(700); // what a skip has dropped isn't heard
    EXPECT_EQ(ring.begin(), 700U);
    EXPECT_EQ(ring.frames(), 0U);
}

} // namespace
} // namespace tessavox::voice
