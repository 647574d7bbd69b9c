#include "tests/platform/voice/text/reading_properties.h"

#include <gtest/gtest.h>
#include <random>

namespace tessavox::voice {
namespace {

constexpr std::u16string_view pieces[] = { u"a", u"word", u" ", u" ", u" ", u".", u". ", u"! ",
    u"?", u", ", u"\u2026", u"Mr. ", u"e.g. ", u"3.14", u"20%", u"\n", u"\n\n", u"\t", u"\r\n",
    u"&amp;", u"&#x1F600;", u"&#46;", u"&#32;", u"&", u"<", u">", u"<b>", u"</b>", u"<emph>",
    u"</emph>", u"<rate speed='1'/>", u"<rate speed='2'>", u"</rate>", u"<spell>", u"</spell>",
    u"<silence msec='5'/>", u"<bookmark mark='x'/>", u"<bookmark mark='y'/>",
    u"<volume level='50'>", u"</volume>", u"<context id='date_mdy'>", u"</context>",
    u"<pron sym='a b'/>", u"<pron sym='c'>", u"</pron>", u"<voice required='Name=Anna'>",
    u"</voice>", u"<!-- c -->", u"<!--", u"-->", u"<![CDATA[", u"]]>", u"<?pi?>", u"<a b=\"", u"'",
    u"\"", u"\u201D", u"\u00E4", u"e\u0301", u"\u4F60\u597D", u"\u3002", u"\u300D",
    u"\U0001F469\u200D\U0001F467", u"\U00020000", u"\uFEFF", u"-", u"don't", u"AT&T", u"$5", u"===",
    u"\u0E2A\u0E27\u0E31", u"\u043C\u0438\u0440" };

std::u16string random_text(std::mt19937& random, int length)
{
    std::u16string text;
    // A text made of few kinds of pieces meets their meetings more often.
    std::vector<std::u16string_view> some;
    for (int each = 0; each < 12; ++each)
        some.push_back(pieces[random() % std::size(pieces)]);
    for (int each = 0; each < length; ++each) {
        text += some[random() % some.size()];
        if (random() % 64 == 0)
            text += static_cast<char16_t>(random());
        if (random() % 512 == 0)
            text.append(random() % 5000, text.empty() ? u'x' : text.back());
    }
    return text;
}

TEST(Reading, OfAnyTextIsCompleteExactAndRepeatable)
{
    std::mt19937 random(20);
    for (int round = 0; round < 200; ++round) {
        const ReaderOptions options{ round % 5 != 0, round % 7 == 0 };
        ReadingCheck check(random_text(random, round % 50 == 0 ? 1500 : 60), options);
        ASSERT_EQ(check.broken(), "") << "round " << round;
    }
}

TEST(Reading, OfABookStartsAndGoesOnAnywhere)
{
    std::u16string text;
    for (int each = 0; each < 500; ++each)
        text += u"This sentence <emph>has</emph> a number, " + to_utf16(std::to_string(each))
            + u". ";
    ReadingCheck check(text, {});
    EXPECT_EQ(check.broken(), "");
}

TEST(Reading, FromAPlaceKeepsWhatIsInForce)
{
    const TextSlice text(u"<rate speed='2'>One. <![CDATA[Two <b>. Three]]> four</rate> five. Six");
    TextReader reader(text, {}, two_voices);
    std::vector<std::string> rest;
    for (int each = 0; each < 3; ++each) {
        rest.push_back(told(read_all(text, {}, reader.place())));
        reader.next();
    }
    EXPECT_EQ(rest[1], "[rate=2]Two <b>.|[rate=2]Three four|five.|Six");
    EXPECT_EQ(rest[2], "[rate=2]Three four|five.|Six");
}

} // namespace
} // namespace tessavox::voice
