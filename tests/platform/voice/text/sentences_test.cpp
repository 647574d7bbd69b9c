#include "tests/platform/voice/text/reading.h"

#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

TEST(Sentences, EndWhereAPersonEndsThem)
{
    for (const std::u16string text : {
             u" [One.] [Two!] [Three?]  [Four]",
             u"[Mr. Lorry met Dr. A. Manette.] [He left.]",
             u"[See e.g. page 3.5 and No. 7.] [No.] [I won't.]",
             u"[Apples etc. are good.] [Apples etc.] [Good.]",
             u"[At 5 p.m. we left.] [At 5 p.m.] [We left.]",
             u"[So am I.] [Then in 1999.] [The end.]",
             u"[\u201CWhy?\u201D he asked.] [\u201CNo.\u201D] [\u201CYes.\u201D]",
             u"[Well... maybe.] [Well\u2026] [Maybe?!] [(Yes.)] [No]",
             u"[www.example.com is up.]",
             u"[你好。][再见！][「好？」][他说]",
             u"[Heading]\n\n[Text over\ntwo lines.]\r\n\r\n[Next]",
             u"[One]\u2029[Two]\n[- three]\n[- four]",
             u"[1. Introduction]\n\n[1. Good]",
             u"<b>[One</b>.] <rate speed='1'>[Two</rate> <i>three.]</i> [Four]",
             u"<p>[One.]</p><p>[Two]</p>",
             u"[A]\n<silence msec='1'/>\n[B]",
             u"[Say &quot;no.&quot;] [Go]",
             u"[\u201EHallo.\u201C] [Ja.] [\u00BBNein!\u00AB] [Gut.]",
             u"[Quoi ?] [Non !] [Well . . . maybe.] [\u00BFQu\u00E9?] [S\u00ED.]",
             u"[ok.] [fine.] [sure]",
             u"[One <emph>two</emph> three.] [Four.]",
             u" \t\r\n\u3000",
         })
        EXPECT_EQ(bracketed(text, Extents::sentences), to_utf8(text));
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
        EXPECT_TRUE(utterance.ends_sentence || utterance.text.ends_with(u','));
    }
}

TEST(Sentences, ArePartedByAnyAmountOfWhiteSpace)
{
    const TextSlice text(std::u16string(1'000'000, u' ') + u"a" + std::u16string(50'000, u' ')
        + u"b" + std::u16string(1'000'000, u'\n') + u"c\n");
    EXPECT_EQ(told(read_all(text)), "a b|c");
}

} // namespace
} // namespace tessavox::voice
