// What a character is to a reader who looks for words.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tessavox::voice {

enum class Sign : std::uint8_t {
    white,
    letter,
    digit,
    apostrophe,
    dot,
    comma,
    colon,
    hyphen,
    ampersand,
    percent,
    currency,
    spoken, // a symbol that has a name
    mark, // punctuation
    complex // left to ICU
};

constexpr Sign latin_sign(char16_t c)
{
    if ((c >= u'0' && c <= u'9') || c == 0xB2 || c == 0xB3 || c == 0xB9)
        return Sign::digit;
    if ((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || c == 0xAA || c == 0xB5
        || c == 0xBA || (c >= 0xC0 && c != 0xD7 && c != 0xF7))
        return Sign::letter;
    if (c <= 0x20 || (c >= 0x7F && c <= 0xA0))
        return Sign::white;
    constexpr std::u16string_view spoken = u"#*+<=>@|~\u00A6\u00A7\u00A9\u00AC\u00AE\u00B0\u00B1"
                                           u"\u00B6\u00BC\u00BD\u00BE\u00D7\u00F7";
    switch (c) {
    case u'\'':
        return Sign::apostrophe;
    case u'.':
        return Sign::dot;
    case u',':
        return Sign::comma;
    case u':':
        return Sign::colon;
    case u'-':
        return Sign::hyphen;
    case u'&':
        return Sign::ampersand;
    case u'%':
        return Sign::percent;
    case 0xAD: // soft hyphen
        return Sign::complex;
    case u'$':
    case 0xA2:
    case 0xA3:
    case 0xA4:
    case 0xA5:
        return Sign::currency;
    default:
        return spoken.find(c) != spoken.npos ? Sign::spoken : Sign::mark;
    }
}

constexpr std::size_t latin_end = 0x250;

/// For characters from latin_end on.
Sign wide_sign(char16_t c);

inline constexpr std::array<Sign, latin_end> latin_signs = [] {
    std::array<Sign, latin_end> table{};
    for (std::size_t each = 0; each < latin_end; ++each)
        table[each] = latin_sign(static_cast<char16_t>(each));
    return table;
}();

inline Sign sign_of(char16_t c)
{
    return c < latin_end ? latin_signs[c] : wide_sign(c);
}

inline bool is_word(Sign sign)
{
    return sign == Sign::letter || sign == Sign::digit;
}

inline bool is_spoken(Sign sign)
{
    return sign == Sign::spoken || sign == Sign::currency || sign == Sign::percent
        || sign == Sign::ampersand;
}

} // namespace tessavox::voice
