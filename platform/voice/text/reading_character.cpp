#include "platform/voice/text/reading_character.h"

#include <string_view>
#include <unicode/uchar.h>

namespace tessavox::voice {

ReadingKind wide_reading_kind(char16_t c)
{
    if ((c & 0xF800) == 0xD800)
        return ReadingKind::surrogate;
    if (u_isalnum(c))
        return ReadingKind::plain;
    constexpr char16_t zero_width_space = 0x200B;
    constexpr char16_t byte_order_mark = 0xFEFF;
    if (c <= 0xA0 || u_isUWhiteSpace(c) || c == zero_width_space || c == byte_order_mark)
        return ReadingKind::white;
    // A full stop of full width stands in numbers too.
    if (c == u'\u2026' || (c != u'\uFF0E' && u_hasBinaryProperty(c, UCHAR_S_TERM)))
        return c < 0x3000 ? ReadingKind::terminator : ReadingKind::wide_terminator;
    return ReadingKind::plain;
}

// German closes with what English opens with, and turns the angle quotes round.
bool is_closer(char16_t c)
{
    constexpr auto closing = U_GC_PE_MASK | U_GC_PF_MASK | U_GC_PI_MASK;
    return c == u'"' || c == u'\'' || c == u'\uFF02' || (U_GET_GC_MASK(c) & closing) != 0;
}

bool is_opener(char16_t c)
{
    constexpr auto opening = U_GC_PS_MASK | U_GC_PF_MASK | U_GC_PI_MASK;
    return c == u'"' || c == u'\'' || c == u'\u00A1' || c == u'\u00BF'
        || (U_GET_GC_MASK(c) & opening) != 0;
}

bool is_wordish(char16_t c)
{
    constexpr auto parts = U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK | U_GC_CS_MASK;
    return (U_GET_GC_MASK(c) & parts) != 0;
}

bool is_bullet(char16_t c)
{
    constexpr std::u16string_view bullets = u"-*\u00B7\u2013\u2014\u2022\u2023\u25E6\u25AA\u25CF";
    return bullets.find(c) != std::u16string_view::npos;
}

std::uint32_t line_ends_of(char16_t c, char16_t next)
{
    switch (c) {
    case u'\n':
    case 0x85:
    case 0x2028:
        return 1;
    case u'\r':
        return next == u'\n' ? 0 : 1;
    case u'\f':
    case 0x2029:
        return paragraph_line_ends;
    default:
        return 0;
    }
}

} // namespace tessavox::voice
