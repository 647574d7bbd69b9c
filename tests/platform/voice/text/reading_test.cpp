// What becomes of a text before an engine sees it.
#include "fuzz/reading_properties.h"
#include "platform/voice/text/markup_scanner.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tessavox::voice {
namespace {

TEST(Reading, OfAnyTextIsCompleteExactAndRepeatable)
{
    for (const auto& file : std::filesystem::directory_iterator(MARKUP_CORPUS)) {
        std::ifstream bytes(file.path(), std::ios::binary);
        const std::u16string text = text_of_bytes(
            std::string(std::istreambuf_iterator<char>(bytes), std::istreambuf_iterator<char>()));
        for (const bool markup : { true, false })
            for (const bool punctuation : { true, false })
                EXPECT_EQ(ReadingCheck(text, { markup, punctuation }).broken(), "") << file.path();
    }
}

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

struct Row {
    const char16_t* text;
    const char* told;
};

constexpr Row rows[] = {
    // Tags as the insert menu makes them.
    { u"One <silence msec=\"500\" /  > two.", "One|(500)|two." },
    { u"One. <VOICE REQUIRED=\"NAME=Anna\" > Two.", "One.|[voice=1]Two." },
    { u"A <rate speed=\"-1\" > b <rate speed=\"-1\" > c.", "A|[rate=-1]b|[rate=-2]c." },
    { u"Say <spell>it now</spell> ok <spell></spell>all.", "Say|[spell]it now|ok all." },
    // Each element sets its part of the style, within its range.
    { u"<rate speed=\"25\" > fast.", "[rate=10]fast." },
    { u"<rate absspeed='3'>a</rate> b", "[rate=3]a|b" },
    { u"<rate speed='3'>a<rate absspeed='1'>b</rate>c</rate>", "[rate=3]a|[rate=1]b|[rate=3]c" },
    { u"<pitch middle='-4'>a<pitch middle='-9'>b</pitch></pitch>", "[pitch=-4]a|[pitch=-10]b" },
    { u"<volume level='50'>a<volume level='20'>b</volume></volume>", "%50 a %20 b" },
    { u"<emph>a</emph>b", "[emph]a|b" },
    { u"<voice optional='Name=Bert'>a</voice>b<voice>c</voice>", "[voice=2]a|b c" },
    { u"<lang langid='0407'>a</lang>b<lang langid='hx'/>c<lang langid='407'/>d",
        "[voice=2]a|b c|[voice=2]d" },
    // What makes no sound parts no utterance, so that it costs nothing that is heard.
    { u"On <context id='date_mdy'>1/2/03</context> x", "On date_mdy(1/2/03) x" },
    { u"Old<bookmark mark='x'/> <volume level='9'>re</volume>cord", "Old {x}%9 re %100 cord" },
    { u"a <bookmark mark='x &amp; y'/>b<bookmark/> c.", "a {x & y}b c." },
    // Phonemes stand for the enclosed text or for themselves.
    { u"Say <pron sym='h eh 1 l ow'>hello</pron> now", "Say|/h/eh/1/l/ow/hello|now" },
    { u"Say <pron sym='h ay'/> now", "Say|/h/ay/|now" },
    { u"<pron sym='h'>a <emph>b</emph> c</pron> d", "/h/a b c|d" },
    { u"<pron sym='h'>One. Two.", "/h/One.|Two." },
    // Elements nest, and end with the one around them.
    { u"<emph>a<rate speed='2'>b</rate>c</emph>d", "[emph]a|[rate=2 emph]b|[emph]c|d" },
    { u"<emph>a<rate speed='2'/>b</emph>c", "[emph]a|[rate=2 emph]b|c" },
    { u"<emph>a<rate speed='2'><pitch middle='1'>b</emph>c", "[emph]a|[rate=2 pitch=1 emph]b|c" },
    { u"One.<rate speed='1'> Two.</rate>\n\nThree", "One.|[rate=1]Two.|Three" },
    { u"<emph>a. b. c", "[emph]a.|[emph]b.|[emph]c" },
    { u"<RATE Speed='1'>a</rAtE>b", "[rate=1]a|b" },
    // Comments and the like are skipped, entities decoded, unknown elements looked through.
    { u"<?xml version='1.0'?><!DOCTYPE x>a<!-- <emph> -- b -->c", "a c" },
    { u"a <![CDATA[<emph> &amp; b]]> c<![CDATA[]]>", "a <emph> &amp; b c" },
    { u"&lt;emph&gt; &amp;amp; &quot;x&apos;", "<emph> &amp; \"x'" },
    { u"&#65;&#x1F4AF;&#xfa; a&#1;b&#10;c&#49;", "A\U0001F4AFú a b c1" },
    { u"x<unknown a='1'>y</unknown>z", "x y z" },
};

TEST(Markup, IsObeyed)
{
    for (const Row& row : rows)
        EXPECT_EQ(told(read_all(row.text)), row.told) << to_utf8(row.text);
}

TEST(Markup, IsSpokenWhereItIsNotWellFormedOrNotWanted)
{
    for (const char16_t* text :
        { u"5 < 6 > 4 & 3", u"<", u"a<b", u"<emph a", u"<rate speed=3>a", u"<rate speed='3>a",
            u"<VOICE REQUIRED=\"NAME=My \"Anna\"\" > x.", u"</>a", u"<!-- a", u"<!nonsense>a",
            u"<![CDATA[a", u"<?a", u"&amp", u"AT&T &nbsp; &; &#xD800; &#0; &#x110000; &#1a;" })
        EXPECT_EQ(told(read_all(text)), to_utf8(text));
    EXPECT_EQ(told(read_all(u"<emph>a&amp;</emph>", { .markup = false })), "<emph>a&amp;</emph>");
    EXPECT_TRUE(looks_like_markup(u"<a"));
    EXPECT_FALSE(looks_like_markup(u" <a") || looks_like_markup(u""));
}

std::u16string repeated(std::u16string_view piece, std::size_t times)
{
    std::u16string text;
    while (times-- > 0)
        text += piece;
    return text;
}

// Were the cost to rise with the square of the length, each row would take longer than the whole
// program may.
TEST(Markup, ThatIsHostileCostsInProportionToItsLength)
{
    constexpr std::size_t step_back = 100; // the reader goes back where it cuts a sentence
    constexpr std::pair<std::u16string_view, std::u16string_view> hostile[] = { { u"<", u"" },
        { u"<a b=\"", u"" }, { u"<a b='\"", u"" }, { u"</a ", u"" }, { u"<!--", u"" },
        { u"<?", u"" }, { u"<![CDATA[", u"" }, { u"<!DOCTYPE [", u"]" }, { u"<!DOCTYPE ", u"[>" } };
    for (const auto& [piece, end] : hostile) {
        const std::size_t times = 600'000 / piece.size();
        const std::u16string text = repeated(piece, times) + std::u16string(end);
        MarkupScanner scanner(text);
        const auto finds = [&](std::size_t at) {
            return scanner.scan(at * piece.size()).kind != Markup::Kind::none;
        };
        for (std::size_t at = 0; at < times; ++at)
            ASSERT_FALSE(finds(at) || (at > step_back && finds(at - step_back))) << to_utf8(piece);
    }
}

} // namespace
} // namespace tessavox::voice
