#include "platform/text_case.h"

#include "platform/text.h"

#include <unicode/ustring.h>

#include <algorithm>

namespace tessavox {

namespace {

using Convert
    = int32_t (*)(char16_t*, int32_t, const char16_t*, int32_t, const char* locale, UErrorCode*);

/// The result may be longer or shorter than the text.
std::u16string converted(std::u16string_view text, Convert convert)
{
    std::u16string result(text.size() + text.size() / 8 + 8, u'\0');
    for (;;) {
        UErrorCode error = U_ZERO_ERROR;
        const int32_t length = convert(result.data(), static_cast<int32_t>(result.size()),
            text.data(), static_cast<int32_t>(text.size()), nullptr, &error);
        const bool fits = length <= static_cast<int32_t>(result.size());
        result.resize(static_cast<std::size_t>(length));
        if (fits)
            return result;
    }
}

bool separates_words(char16_t unit)
{
    return unit == 0 || unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

} // namespace

std::u16string lower_case(std::u16string_view text)
{
    return converted(text, u_strToLower);
}

std::u16string upper_case(std::u16string_view text)
{
    return converted(text, u_strToUpper);
}

std::u16string word_capitals(std::u16string_view text)
{
    std::u16string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t first = at;
        next_character(text, at);
        if (separates_words(text[first])) {
            result += text[first];
            continue;
        }
        const auto end
            = static_cast<std::size_t>(std::find_if(text.begin() + static_cast<std::ptrdiff_t>(at),
                                           text.end(), separates_words)
                - text.begin());
        result += upper_case(text.substr(first, at - first));
        result += lower_case(text.substr(at, end - at));
        at = end;
    }
    return result;
}

} // namespace tessavox
