#include "platform/voice/text/markup_scanner.h"
#include "tests/platform/voice/text/reading.h"

#include <gtest/gtest.h>
#include <span>

namespace tessavox::voice {
namespace {

struct Row {
    const char16_t* text;
    const char* told;
};

void expect_rows(std::span<const Row> rows)
{
    for (const Row& row : rows)
        EXPECT_EQ(told(read_all(row.text)), row.told) << to_utf8(row.text);
}

TEST(Markup, TagsOfTheInsertMenuAreObeyed)
{
    constexpr Row rows[] = {
        { u"One <silence msec=\"500\" /  > two.", "One|(500)|two." },
        { u"One. <VOICE REQUIRED=\"NAME=Anna\" > Two.", "One.|[voice=1]Two." },
        { u"<VOICE REQUIRED=\"NAME=Nobody\" > One.", "One." },
        { u"<VOICE REQUIRED=\"NAME=My \"Anna\"\" > x.",
            "<VOICE REQUIRED=\"NAME=My \"Anna\"\" > x." },
        { u"A <rate speed=\"-1\" > b <rate speed=\"-1\" > c.", "A|[rate=-1]b|[rate=-2]c." },
        { u"<rate speed=\"25\" > fast.", "[rate=10]fast." },
        { u"<rate speed=\"quick\" > same.", "same." },
        { u"Say <spell>it now</spell> ok.", "Say|[spell]it now|ok." },
        { u"Say <spell></spell>ok.", "Say ok." },
    };
    expect_rows(rows);
}

TEST(Markup, EachElementSetsItsPartOfTheStyle)
{
    constexpr Row rows[] = {
        { u"<rate absspeed='3'>a</rate> b", "[rate=3]a|b" },
        { u"<rate speed='3'>a<rate absspeed='1'>b</rate>c</rate>",
            "[rate=3]a|[rate=1]b|[rate=3]c" },
        { u"<pitch middle='-4'>a<pitch middle='-9'>b</pitch></pitch>", "[pitch=-4]a|[pitch=-10]b" },
        { u"<pitch absmiddle='99'/>a", "[pitch=10]a" },
        { u"<volume level='50'>a<volume level='20'>b</volume></volume>", "%50 a %20 b" },
        { u"<volume level='-5'/>a", "%0 a" },
        { u"<volume level='101'/>a", "a" },
        { u"<emph>a</emph>b", "[emph]a|b" },
        { u"<voice optional='Name=Bert'>a</voice>b", "[voice=2]a|b" },
        { u"<voice>a</voice>", "a" },
        { u"<lang langid='407'/>a", "[voice=2]a" },
        { u"<lang langid='0407'>a</lang>b", "[voice=2]a|b" },
        { u"<lang langid='hx'/>a", "a" },
        { u"a <partofsp part='noun'>record</partofsp> b", "a record b" },
        { u"On <context id='date_mdy'>1/2/03</context> x", "On date_mdy(1/2/03) x" },
        { u"<sapi>a</sapi>b", "a b" },
        { u"a <bookmark mark='x &amp; y'/>b.", "a {x & y}b." },
        { u"<bookmark/>b", "b" },
        { u"<silence msec='70000'/>a", "(65535)|a" },
        { u"<silence msec='-1'/>a", "(0)|a" },
        { u"<silence/><silence msec='1.5'/>a", "a" },
        { u"<silence msec='7'>a</silence>b", "(7)|a b" },
    };
    expect_rows(rows);
}

TEST(Markup, PhonemesStandForTheEnclosedTextOrForThemselves)
{
    constexpr Row rows[] = {
        { u"Say <pron sym='h eh 1 l ow'>hello</pron> now", "Say|/h/eh/1/l/ow/hello|now" },
        { u"Say <pron sym='h ay'/> now", "Say|/h/ay/|now" },
        { u"<pron sym='h ay'></pron>now", "/h/ay/|now" },
        { u"<pron sym='h'>a <emph>b</emph> c</pron> d", "/h/a b c|d" },
        { u"<pron sym=''>a</pron>", "a" },
        { u"<pron sym='h'>One. Two.", "/h/One.|Two." },
    };
    expect_rows(rows);
    const TextSlice text(u"a <pron sym='h'/> b");
    EXPECT_EQ(source_words(text, read_all(text)),
        (std::vector<std::string>{ "a", "<pron sym='h'/>", "b" }));
}

TEST(Markup, ElementsNestAndEnd)
{
    constexpr Row rows[] = {
        { u"<emph>a<rate speed='2'>b</rate>c</emph>d", "[emph]a|[rate=2 emph]b|[emph]c|d" },
        { u"a<rate speed='2'/>b<pitch middle='1'/>c", "a|[rate=2]b|[rate=2 pitch=1]c" },
        { u"<emph>a<rate speed='2'/>b</emph>c", "[emph]a|[rate=2 emph]b|c" },
        { u"<emph>a<rate speed='2'>b</emph>c", "[emph]a|[rate=2 emph]b|c" },
        { u"<emph>a<rate speed='2'><pitch middle='1'>b</emph>c",
            "[emph]a|[rate=2 pitch=1 emph]b|c" },
        { u"a</emph>b</rate>c", "a b c" },
        { u"One.<rate speed='1'> Two.</rate>\n\nThree", "One.|[rate=1]Two.|Three" },
        { u"<rate speed='1'>a</emph>b", "[rate=1]a b" },
        { u"<emph/>a <spell/>b", "a b" },
        { u"<emph>a. b. c", "[emph]a.|[emph]b.|[emph]c" },
        { u"<foo><emph>a</foo>b</emph>c", "[emph]a b|c" },
        { u"<RATE Speed='1'>a</rAtE>b", "[rate=1]a|b" },
        { u"<rate speed='1' speed='5'>a", "[rate=1]a" },
        { u"<rate speed='1'><rate speed='-1'>a</rate></rate>", "a" },
    };
    expect_rows(rows);
}

TEST(Markup, WhatIsNotWellFormedIsSpoken)
{
    constexpr Row rows[] = {
        { u"5 < 6 > 4 & 3", "5 < 6 > 4 & 3" },
        { u"<", "<" },
        { u"a<b", "a<b" },
        { u"<emph a", "<emph a" },
        { u"<emph <emph>x", "<emph|[emph]x" },
        { u"<rate speed=3>a", "<rate speed=3>a" },
        { u"<rate speed='3>a", "<rate speed='3>a" },
        { u"</>a", "</>a" },
        { u"<!-- a", "<!-- a" },
        { u"<!nonsense>a", "<!nonsense>a" },
        { u"<![CDATA[a", "<![CDATA[a" },
        { u"<?a", "<?a" },
        { u"AT&T &nbsp; &; &#xD800; &#0; &#x110000; &#1a;",
            "AT&T &nbsp; &; &#xD800; &#0; &#x110000; &#1a;" },
        { u"&amp", "&amp" },
    };
    expect_rows(rows);
}

TEST(Markup, CommentsAndTheLikeAreSkippedAndEntitiesDecoded)
{
    constexpr Row rows[] = {
        { u"<?xml version='1.0'?><!DOCTYPE x>a<!-- <emph> -- b -->c", "a c" },
        { u"<!DOCTYPE x [<!ENTITY y 'z'>]>a", "a" },
        { u"a <![CDATA[<emph> &amp; b]]> c", "a <emph> &amp; b c" },
        { u"<![CDATA[]]>a", "a" },
        { u"&lt;emph&gt; &amp;amp; &quot;x&apos;", "<emph> &amp; \"x'" },
        { u"&#65;&#x1F600;&#xe4;", "A\U0001F600ä" },
        { u"a&#1;b&#10;c", "a b c" },
        { u"x<unknown a='1'>y</unknown>z", "x y z" },
    };
    expect_rows(rows);
}

TEST(Markup, WithoutMarkupTagsAreText)
{
    EXPECT_EQ(told(read_all(u"<emph>a&amp;</emph>", { .markup = false })), "<emph>a&amp;</emph>");
    EXPECT_TRUE(looks_like_markup(u"<a"));
    EXPECT_FALSE(looks_like_markup(u" <a"));
    EXPECT_FALSE(looks_like_markup(u""));
}

TEST(Markup, DeepNestingIsReadAndForgottenWithoutRecursion)
{
    constexpr int depth = 20'000;
    std::u16string text;
    for (int each = 0; each < depth; ++each)
        text += u"<emph>";
    text += u"a";
    for (int each = 0; each < depth; ++each)
        text += u"</emph>";
    EXPECT_EQ(told(read_all(text + u"b")), "[emph]a|b");
}

// Were the cost to rise with the square of the length, each row would take longer than the whole
// program may.
TEST(Markup, HostileTextCostsInProportionToItsLength)
{
    constexpr std::size_t size = 600'000;
    constexpr std::size_t step_back = 100; // the reader goes back where it cuts a sentence
    constexpr Row rows[] = {
        { u"<", "" },
        { u"<a b=\"", "" },
        { u"<a b='\"", "" },
        { u"</a ", "" },
        { u"<!--", "" },
        { u"<?", "" },
        { u"<![CDATA[", "" },
        { u"<!DOCTYPE [", "]" },
        { u"<!DOCTYPE ", "[>" },
    };
    for (const Row& row : rows) {
        const std::size_t period = std::u16string_view(row.text).size();
        std::u16string text;
        while (text.size() < size)
            text += row.text;
        text += to_utf16(row.told);
        MarkupScanner scanner(text);
        int found = 0;
        for (std::size_t at = 0; at + period < size; at += period) {
            found += scanner.scan(at).kind != Markup::Kind::none;
            if (at > step_back * period)
                found += scanner.scan(at - step_back * period).kind != Markup::Kind::none;
        }
        EXPECT_EQ(found, 0) << to_utf8(row.text);
    }
}

TEST(Markup, ALongBookmarkNameArrivesWhole)
{
    const std::u16string name(100'000, u'x');
    const auto items = read_all(u"<bookmark mark='" + name + u"'/>");
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(std::get<Bookmark>(items[0]).name, to_utf8(name));
}

} // namespace
} // namespace tessavox::voice
