#include "platform/text.h"

#include <gtest/gtest.h>

namespace tessavox {
namespace {

TEST(Encoding, KeepsEveryCharacterAndMarksWhatIsNone)
{
    for (const char32_t each : { U'a', U'\u007F', U'\u0080', U'\u07FF', U'\u0800', U'\uFFFD',
             U'\uFFFF', U'\U00010000', U'\U0010FFFF' }) {
        std::u16string text;
        append_character(text, each);
        EXPECT_EQ(to_utf16(to_utf8(text)), text);
        EXPECT_EQ(to_utf32(text), std::u32string(1, each));
    }
    struct Row {
        const char* utf8;
        const char16_t* text;
    };
    const Row rows[] = {
        { "a\x80z", u"a\uFFFDz" }, { "a\xE4\xBDz", u"a\uFFFDz" }, // cut short: one bad piece
        { "\xF0\x9F\x98", u"\uFFFD" }, { "\xED\xA0\x80z", u"\uFFFD\uFFFD\uFFFDz" }, // a surrogate
        { "\xF5z", u"\uFFFDz" }, { "\xC0\xAFz", u"\uFFFD\uFFFDz" }, // longer than need be
    };
    for (const Row& row : rows)
        EXPECT_EQ(to_utf16(row.utf8), row.text);
    EXPECT_EQ(to_utf8(std::u16string{ u'a', 0xD800, u'b', 0xDC00 }), "a\uFFFDb\uFFFD");
    EXPECT_EQ(lower_ascii("AZ[\xC3\x84"), "az[\xC3\x84");
}

} // namespace
} // namespace tessavox
