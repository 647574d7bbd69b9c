// Where words and sentences begin and end.
#include "tests/platform/voice/text/reading.h"

#include <gtest/gtest.h>

namespace tessavox::voice {
namespace {

TEST(Words, AreWhatAPersonSees)
{
    for (const std::u16string text : {
             u"[of] [the] [don't], [I'm] [80's] [don\u2019t] \u2018[x]\u2019",
             u"[well-known], [10-12] - [a]--[b]",
             u"[3.19] [1,000,000] [12:30] [20%] [$5.00] [v2]",
             u"([AT&T]) [Q] [&] [A]",
             u"[e.g]. [U.S]. [at] [5] [p.m].",
             u"[Größe] [naïve] [Ängste] [Gro\u0308ße]",
             u"[Привет], [мир]! [καλημέρα] [Жан-Поль] [20%] [€5] [x]",
             u"[我们][去][北京]。",
             u"[สวัสดี][ครับ]",
             u"[हिन्दी] [में] [שלום] [עולם]",
             u"[😀] [👩‍👩‍👧][x] [🇩🇪][🇫🇷] [👍🏽]",
             u"[a]\t[b]\n[c]\r\n[d]\u00A0[e]\u3000[f]",
             u"[AT&amp;T] [&#228;h] [wo]<b>[r]</b>[d]",
             u"[a] [<pron sym='h'/>] [b]",
             u"[a] <spell>[b] [1][,][e\u0301][&amp;]</spell> [c]",
         })
        EXPECT_EQ(bracketed(text, Extents::words), to_utf8(text));
    const std::u16string text = u"[Oh][,] [\u201C][don't][\u201D][.][.][.] [я][!]";
    EXPECT_EQ(bracketed(text, Extents::words, { .speak_punctuation = true }), to_utf8(text));
}

TEST(Words, EnginesNeverSeeControlCharactersOrLoneSurrogates)
{
    const std::u16string hostile = std::u16string(u"a\u0001b\u0000c\u007Fd\u0085e", 9)
        + char16_t(0xD800) + u" " + char16_t(0xDC00) + u"f";
    EXPECT_EQ(told(read_all(hostile)), "a b c d e\uFFFD \uFFFDf");
}

TEST(Sentences, EndWhereAPersonEndsThem)
{
    for (const std::u16string text : {
             u" [One.] [Two!] [Three?]  [Four]",
             u"[Mr. Lorry met Dr. A. Manette.] [He left.]",
             u"[See e.g. page 3.5 and No. 7.] [No.] [I won't.]",
             u"[Apples etc. are good.] [Apples etc.] [Good.]",
             u"[At 5 p.m. we left.] [At 5 p.m.] [We left.]",
             u"[\u201CWhy?\u201D he asked.] [\u201CNo.\u201D] [\u201CYes.\u201D]",
             u"[Well... maybe.] [Well\u2026] [Maybe?!] [(Yes.)] [No]",
             u"[你好。][再见！][「好？」][他说]",
             u"[Heading]\n\n[Text over\ntwo lines.]\r\n\r\n[Next]",
             u"[One]\u2029[Two]\n[- three]\n[- four]",
             u"<b>[One</b>.] <rate speed='1'>[Two</rate> <i>three.]</i> [Four]",
             u"<p>[One.]</p><p>[Two]</p>",
             u"[Say &quot;no.&quot;] [Go]",
             u"[\u201EHallo.\u201C] [Ja.] [\u00BBNein!\u00AB] [Gut.]",
             u"[Quoi ?] [Non !] [Well . . . maybe.] [\u00BFQu\u00E9?] [S\u00ED.]",
             u"[One <emph>two</emph> three.] [Four.]",
             u" \t\r\n\u3000",
         })
        EXPECT_EQ(bracketed(text, Extents::sentences), to_utf8(text));
}

} // namespace
} // namespace tessavox::voice
