#include "tests/platform/voice/text/reading_properties.h"

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
