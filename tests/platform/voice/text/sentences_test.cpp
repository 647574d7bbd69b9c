#include "tests/platform/voice/text/reading.h"

#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

using Sentences = std::vector<std::string>;

Sentences sentences_of(const TextSlice& text)
{
    return source_sentences(text, read_all(text));
}

TEST(Sentences, EndWhereAPersonEndsThem)
{
    struct Row {
        const char16_t* text;
        Sentences sentences;
    };
    const Row rows[] = {
        { u" One. Two! Three?  Four", { "One.", "Two!", "Three?", "Four" } },
        { u"Mr. Lorry met Dr. A. Manette. He left.",
            { "Mr. Lorry met Dr. A. Manette.", "He left." } },
        { u"See e.g. page 3.5 and No. 7. No. I won't.",
            { "See e.g. page 3.5 and No. 7.", "No.", "I won't." } },
        { u"Apples etc. are good. Apples etc. Good.",
            { "Apples etc. are good.", "Apples etc.", "Good." } },
        { u"At 5 p.m. we left. At 5 p.m. We left.",
            { "At 5 p.m. we left.", "At 5 p.m.", "We left." } },
        { u"So am I. Then in 1999. The end.", { "So am I.", "Then in 1999.", "The end." } },
        { u"\u201CWhy?\u201D he asked. \u201CNo.\u201D \u201CYes.\u201D",
            { "\u201CWhy?\u201D he asked.", "\u201CNo.\u201D", "\u201CYes.\u201D" } },
        { u"Well... maybe. Well\u2026 Maybe?! (Yes.) No",
            { "Well... maybe.", "Well\u2026", "Maybe?!", "(Yes.)", "No" } },
        { u"www.example.com is up.", { "www.example.com is up." } },
        { u"你好。再见！「好？」他说", { "你好。", "再见！", "「好？」", "他说" } },
        { u"Heading\n\nText over\ntwo lines.\r\n\r\nNext",
            { "Heading", "Text over\ntwo lines.", "Next" } },
        { u"One\u2029Two\n- three\n- four", { "One", "Two", "- three", "- four" } },
        { u"1. Introduction\n\n1. Good", { "1. Introduction", "1. Good" } },
        { u"<b>One</b>. <rate speed='1'>Two</rate> <i>three.</i> Four",
            { "One</b>.", "Two</rate> <i>three.", "Four" } },
        { u"<p>One.</p><p>Two</p>", { "One.", "Two" } },
        { u"A\n<silence msec='1'/>\nB", { "A", "B" } },
        { u"Say &quot;no.&quot; Go", { "Say &quot;no.&quot;", "Go" } },
        { u"\u201EHallo.\u201C Ja. \u00BBNein!\u00AB Gut.",
            { "\u201EHallo.\u201C", "Ja.", "\u00BBNein!\u00AB", "Gut." } },
        { u"Quoi ? Non ! Well . . . maybe. \u00BFQu\u00E9? S\u00ED.",
            { "Quoi ?", "Non !", "Well . . . maybe.", "\u00BFQu\u00E9?", "S\u00ED." } },
        { u"ok. fine. sure", { "ok.", "fine.", "sure" } },
    };
    for (const Row& row : rows)
        EXPECT_EQ(sentences_of(row.text), row.sentences) << to_utf8(row.text);
}

TEST(Sentences, SpanTheUtterancesThatTagsDivideThemInto)
{
    const auto items = read_all(u"One <emph>two</emph> three. Four.");
    ASSERT_EQ(items.size(), 4u);
    const auto utterance = [&](std::size_t at) { return std::get<Utterance>(items[at]); };
    EXPECT_EQ(utterance(0).sentence->source_length, 27u);
    EXPECT_FALSE(utterance(0).ends_sentence);
    EXPECT_FALSE(utterance(1).sentence || utterance(1).ends_sentence);
    EXPECT_FALSE(utterance(2).sentence.has_value());
    EXPECT_TRUE(utterance(2).ends_sentence);
    EXPECT_EQ(utterance(3).sentence->source_begin, 28u);
}

TEST(Sentences, LongOnesAreCutWhereASpeakerBreathes)
{
    std::u16string text;
    for (int each = 0; each < 120; ++each)
        text += each % 10 == 9 ? u"eleven, " : u"eleven ";
    const auto items = read_all(text);
    ASSERT_GE(items.size(), 2u);
    EXPECT_LT(std::get<Utterance>(items[0]).text.size(), 300u);
    for (const SpeechItem& item : items) {
        const auto& utterance = std::get<Utterance>(item);
        EXPECT_LE(utterance.text.size(), 800u);
        if (!utterance.ends_sentence) {
            EXPECT_EQ(utterance.text.back(), u',');
        }
    }
}

TEST(Sentences, WhiteSpaceIsPassedOver)
{
    const TextSlice text(std::u16string(1'000'000, u' ') + u"a" + std::u16string(50'000, u' ')
        + u"b" + std::u16string(1'000'000, u'\n') + u"c\n");
    EXPECT_EQ(told(read_all(text)), "a b|c");
    EXPECT_TRUE(read_all(u" \t\r\n\u3000").empty());
}

} // namespace
} // namespace tessavox::voice
