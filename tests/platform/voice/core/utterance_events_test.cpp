#include "platform/voice/utterance_events.h"

#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/text/text_reader.h"
#include "platform/voice/text/utterance_parts.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

Utterance utterance_of(const std::u16string& text)
{
    Utterance utterance;
    utterance.text = text;
    std::uint32_t begin = 0;
    for (std::uint32_t i = 0; i <= text.size(); ++i) {
        const bool word = i < text.size() && text[i] >= u'a';
        if (!word && i > begin)
            utterance.tokens.push_back({ begin, i - begin, begin + 100, i - begin });
        if (!word)
            begin = i + 1;
    }
    utterance.sentence = SentenceExtent{ 100, static_cast<std::uint32_t>(text.size()) };
    utterance.ends_sentence = true;
    return utterance;
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
    struct Case {
        const char16_t* text;
        std::size_t most;
        std::size_t division; // token
    };
    const Case cases[] = {
        { u"one two three", 20, 0 },
        { u"one two three four", 12, 2 },
        { u"one, two three four five", 16, 1 },
        { u"a, two three four five six", 20, 4 }, // the comma comes too soon
        { u"onewordthatislongerthanallowed", 10, 0 },
        { u"one", 2, 0 },
    };
    for (const Case& c : cases)
        EXPECT_EQ(division_of(utterance_of(c.text), c.most), c.division) << c.most;
    Utterance pronounced = utterance_of(u"one two three four");
    pronounced.pronunciation = { "w ah n" };
    EXPECT_EQ(division_of(pronounced, 12), 0U);
}

TEST(DividedUtterance, BothPartsTogetherAreTheWhole)
{
    Utterance whole = utterance_of(u"one two three four");
    whole.bookmarks = { { 0, "a" }, { 2, "b" }, { 4, "c" } };
    whole.levels = { { 1, 50 }, { 3, 20 } };
    whole.contexts = { { 4, 9, "x" } };
    const Utterance start = start_of(whole, 2);
    const Utterance rest = rest_of(whole, 2);
    EXPECT_EQ(start.text + rest.text, whole.text);
    ASSERT_EQ(start.tokens.size() + rest.tokens.size(), whole.tokens.size());
    EXPECT_EQ(rest.text.substr(rest.tokens[0].begin, rest.tokens[0].length), u"three");
    EXPECT_EQ(rest.tokens[1].source_begin, whole.tokens[3].source_begin);
    EXPECT_TRUE(start.sentence && !rest.sentence) << "a sentence is told once";
    EXPECT_TRUE(!start.ends_sentence && rest.ends_sentence);

    ASSERT_EQ(start.bookmarks.size(), 1U);
    ASSERT_EQ(rest.bookmarks.size(), 2U);
    EXPECT_EQ(rest.bookmarks[0].token, 0U);
    EXPECT_EQ(rest.bookmarks[1].token, 2U);
    ASSERT_EQ(start.levels.size(), 1U);
    EXPECT_EQ(start.levels[0].token, 1U);
    ASSERT_EQ(rest.levels.size(), 2U) << "what was in force goes on";
    EXPECT_TRUE(rest.levels[0].token == 0 && rest.levels[0].percent == 50);
    EXPECT_TRUE(rest.levels[1].token == 1 && rest.levels[1].percent == 20);
    EXPECT_TRUE(start.contexts[0].begin == 4 && start.contexts[0].length == 4);
    EXPECT_TRUE(rest.contexts[0].begin == 0 && rest.contexts[0].length == 5);
}

TEST(UtteranceEvents, ABookmarkComesBeforeItsWordAtTheSameFrame)
{
    Utterance utterance = utterance_of(u"one two");
    utterance.bookmarks = { { 1, "two" }, { 2, "end" } };
    Rendering rendering = rendering_of({ 0, 400 });
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
    EXPECT_EQ(told, "100@0 two@400 104@400 end@900 ");
}

TEST(UtteranceEvents, AWordOfWhichNothingIsHeardIsNotTold)
{
    const Utterance utterance = utterance_of(u"one two");
    Rendering rendering = rendering_of({ 0, 400 });
    rendering.words[0].silent = 1;
    std::uint64_t sequence = 0;
    std::vector<std::int32_t> positions;
    for (const StreamEvent& event : events_of(
             utterance, rendering, -1, 0, [](std::uint64_t at) { return at; }, sequence))
        if (const auto* word = std::get_if<WordStarted>(&event.happening))
            positions.push_back(word->position);
    EXPECT_EQ(positions, std::vector<std::int32_t>{ 104 });
}

TEST(UtteranceEvents, ALevelHoldsFromItsWordOnWithoutAClick)
{
    Utterance utterance = utterance_of(u"one two three");
    utterance.levels = { { 0, 50 }, { 1, 0 }, { 2, 100 } };
    Rendering rendering = rendering_of({ 0, 400, 700 });
    apply_levels(utterance, rendering);
    EXPECT_EQ(rendering.samples[0], 5'000);
    EXPECT_EQ(rendering.samples[389], 5'000);
    EXPECT_EQ(rendering.samples[400], 0);
    EXPECT_EQ(rendering.samples[689], 0);
    EXPECT_EQ(rendering.samples[700], 10'000);
    EXPECT_EQ(rendering.samples[999], 10'000);
    for (std::size_t at = 1; at < rendering.samples.size(); ++at)
        ASSERT_LE(std::abs(rendering.samples[at] - rendering.samples[at - 1]), 1'000) << at;

    rendering = rendering_of({ 0, 3, 3 });
    apply_levels(utterance, rendering);
    EXPECT_EQ(rendering.samples[3], 10'000) << "words closer than a ramp";
}

class NoVoices : public VoiceChooser {
public:
    std::optional<int> choose(std::string_view, std::string_view, int) const override
    {
        return std::nullopt;
    }
};

/// The words' times in seconds, and the whole length behind them.
std::vector<double> heard_times(Engine& engine, const std::string& voice, const char16_t* text)
{
    const NoVoices voices;
    const std::atomic<bool> not_cancelled{ false };
    TextReader reader(text, {}, voices);
    std::vector<double> times;
    double passed = 0;
    while (const auto item = reader.next()) {
        const auto* utterance = std::get_if<Utterance>(&*item);
        if (!utterance)
            continue;
        const Rendering rendering = engine.render({ voice, 0, utterance }, not_cancelled);
        const auto seconds = [&](std::uint64_t frame) {
            return passed + static_cast<double>(frame) / rendering.sample_rate;
        };
        for (const WordMark& word : rendering.words)
            times.push_back(seconds(word.frame));
        passed = seconds(rendering.samples.size());
    }
    times.push_back(passed);
    return times;
}

TEST(Markup, ThatMakesNoSoundCostsNothingThatIsHeard)
{
    constexpr const char16_t* marked[] = {
        u"She put <bookmark mark='x'/>the old record on, and went to bed early.",
        u"She put the old<bookmark mark='x'/> record on<bookmark mark='y'/>, and went to bed "
        u"early.",
        u"She put the <volume level='99'>old</volume> record on, and went to bed early.",
        u"She put the old <partofsp part='noun'>record</partofsp> on, and went to bed early.",
        u"She put <context id='address'>the old record</context> on, and went to bed early.",
    };
    constexpr const char16_t* plain = u"She put the old record on, and went to bed early.";
    const auto check = [&](Engine& engine, const std::string& voice) {
        const std::vector<double> expected = heard_times(engine, voice, plain);
        for (const char16_t* text : marked) {
            const std::vector<double> times = heard_times(engine, voice, text);
            ASSERT_EQ(times.size(), expected.size()) << to_utf8(text);
            for (std::size_t at = 0; at < times.size(); ++at)
                EXPECT_NEAR(times[at], expected[at], 0.01 * expected.back()) << to_utf8(text);
        }
    };
    check(*make_espeak_engine(), "espeak:gmw/en-US");
    check(*make_flite_engine(), "flite:kal16");
}

} // namespace
} // namespace tessavox::voice
