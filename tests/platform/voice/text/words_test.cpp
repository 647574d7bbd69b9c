#include "tests/platform/voice/text/reading.h"

#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

using Words = std::vector<std::string>;

Words words_of(const TextSlice& text, ReaderOptions options = {})
{
    return source_words(text, read_all(text, options));
}

TEST(Words, AreWhatAPersonSees)
{
    struct Row {
        const char16_t* text;
        Words words;
    };
    const Row rows[] = {
        { u"of the don't, I'm 80's", { "of", "the", "don't", "I'm", "80's" } },
        { u"don\u2019t \u2018x\u2019", { "don\u2019t", "x" } },
        { u"well-known, 10-12 - a--b", { "well-known", "10-12", "a", "b" } },
        { u"3.14 1,000,000 12:30 20% $5.00 v2",
            { "3.14", "1,000,000", "12:30", "20%", "$5.00", "v2" } },
        { u"(AT&T) Q & A", { "AT&T", "Q", "&", "A" } },
        { u"e.g. U.S. at 5 p.m.", { "e.g", "U.S", "at", "5", "p.m" } },
        { u"end.Next === x=1", { "end", "Next", "===", "x", "=", "1" } },
        { u"Größe naïve Ängste", { "Größe", "naïve", "Ängste" } },
        { u"Gro\u0308ße", { "Gro\u0308ße" } },
        { u"Привет, мир! καλημέρα", { "Привет", "мир", "καλημέρα" } },
        { u"Жан-Поль 20% €5 x", { "Жан-Поль", "20%", "€5", "x" } },
        { u"我们去北京。", { "我们", "去", "北京" } },
        { u"สวัสดีครับ", { "สวัสดี", "ครับ" } },
        { u"हिन्दी में", { "हिन्दी", "में" } },
        { u"שלום עולם", { "שלום", "עולם" } },
        { u"😀 👩‍👩‍👧x 🇩🇪🇫🇷 👍🏽",
            { "😀", "👩‍👩‍👧", "x", "🇩🇪", "🇫🇷", "👍🏽" } },
        { u"a\tb\nc\r\nd\u00A0e\u3000f", { "a", "b", "c", "d", "e", "f" } },
        { u"AT&amp;T &#228;h", { "AT&amp;T", "&#228;h" } },
        { u"wo<b>r</b>d", { "wo", "r", "d" } },
        { u"... - \u2014 \u201D", {} },
        { u"", {} },
    };
    for (const Row& row : rows)
        EXPECT_EQ(words_of(row.text), row.words) << to_utf8(row.text);
}

TEST(Words, HaveTheOffsetsOfTheTextAsGiven)
{
    const TextSlice text(u"<emph>\U0001F600 Grüße</emph>,\t<silence msec='1'/>\r\n&lt;5 中文");
    std::vector<std::pair<std::uint32_t, std::uint32_t>> extents;
    for (const SpeechItem& item : read_all(text)) {
        if (const auto* utterance = std::get_if<Utterance>(&item)) {
            for (const Token& token : utterance->tokens)
                extents.emplace_back(token.source_begin, token.source_length);
        }
    }
    EXPECT_EQ(extents,
        (std::vector<std::pair<std::uint32_t, std::uint32_t>>{
            { 6, 2 }, { 9, 5 }, { 44, 4 }, { 48, 1 }, { 50, 2 } }));
}

TEST(Words, PunctuationCountsWhenItIsSpoken)
{
    EXPECT_EQ(words_of(u"Oh, \u201Cdon't\u201D... я!", { .speak_punctuation = true }),
        (Words{ "Oh", ",", "\u201C", "don't", "\u201D", ".", ".", ".", "я", "!" }));
    EXPECT_EQ(words_of(u"a <spell>b 1, e\u0301&amp;</spell> c"),
        (Words{ "a", "b", "1", ",", "e\u0301", "&amp;", "c" }));
}

TEST(Words, LongOnesAreSplitWithoutLosingACharacter)
{
    const TextSlice text(std::u16string(250, u'a') + u" b");
    const auto items = read_all(text);
    EXPECT_EQ(source_words(text, items),
        (Words{ std::string(100, 'a'), std::string(100, 'a'), std::string(50, 'a'), "b" }));
    // The engine must see several words too.
    EXPECT_EQ(std::get<Utterance>(items[0]).text.find(u' '), 100u);

    std::u16string pairs = u"x"; // so that the hundredth unit is a high surrogate
    for (int each = 0; each < 80; ++each)
        pairs += u"\U00020000";
    for (const std::string& word : words_of(pairs))
        EXPECT_EQ(word.find("\uFFFD"), word.npos);
}

TEST(Words, EnginesNeverSeeControlCharactersOrLoneSurrogates)
{
    const std::u16string hostile = std::u16string(u"a\u0001b\u0000c\u007Fd\u0085e", 9)
        + char16_t(0xD800) + u" " + char16_t(0xDC00) + u"f";
    EXPECT_EQ(told(read_all(hostile)), "a b c d e\uFFFD \uFFFDf");
}

} // namespace
} // namespace tessavox::voice
