#include "platform/voice/utterance_events.h"

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
    const Utterance whole = utterance_of(u"one two three four");
    const Utterance start = start_of(whole, 2);
    const Utterance rest = rest_of(whole, 2);
    EXPECT_EQ(start.text + rest.text, whole.text);
    ASSERT_EQ(start.tokens.size() + rest.tokens.size(), whole.tokens.size());
    EXPECT_EQ(rest.text.substr(rest.tokens[0].begin, rest.tokens[0].length), u"three");
    EXPECT_EQ(rest.tokens[1].source_begin, whole.tokens[3].source_begin);
    EXPECT_TRUE(start.sentence && !rest.sentence) << "a sentence is told once";
    EXPECT_TRUE(!start.ends_sentence && rest.ends_sentence);
}

} // namespace
} // namespace tessavox::voice
