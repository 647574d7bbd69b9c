#include "platform/voice/text/reading_character.h"

#include <string_view>

namespace tessavox::voice {

ReadingKind wide_reading_kind(char16_t c)
{
    if (c <= 0xA0)
        return ReadingKind::white;
    if (c >= 0x2000 && c <= 0x200B)
        return ReadingKind::white;
    if ((c & 0xF800) == 0xD800)
        return ReadingKind::surrogate;
    switch (c) {
    case 0x1680:
    case 0x2028: // line separator
    case 0x2029: // paragraph separator
    case 0x202F:
    case 0x205F:
    case 0x3000:
    case 0xFEFF: // byte order mark
        return ReadingKind::white;
    case 0x0589: // Armenian full stop
    case 0x061F: // Arabic question mark
    case 0x06D4: // Arabic full stop
    case 0x0964: // danda
    case 0x0965:
    case 0x104A: // Myanmar
    case 0x104B:
    case 0x1362: // Ethiopic full stop
    case 0x17D4: // Khmer
    case 0x17D5:
    case 0x2026: // ellipsis
    case 0x203C:
    case 0x2047:
    case 0x2048:
    case 0x2049:
        return ReadingKind::terminator;
    case 0x3002: // ideographic full stop
    case 0xFF01:
    case 0xFF1F:
    case 0xFF61:
        return ReadingKind::wide_terminator;
    default:
        return ReadingKind::plain;
    }
}

bool is_closer(char16_t c)
{
    // German closes with what English opens with, and turns the angle quotes round.
    constexpr std::u16string_view closers
        = u"\"')]}\u00AB\u00BB\u2018\u2019\u201C\u201D\u2039\u203A\u3009\u300B\u300D"
          u"\u300F\u3011\u3015\uFF02\uFF09\uFF3D\uFF5D\uFF63";
    return closers.find(c) != std::u16string_view::npos;
}

bool is_wordish(char16_t c)
{
    if (c < 0x80)
        return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
    const bool punctuation = c < 0xC0 || (c >= 0x2000 && c <= 0x206F)
        || (c >= 0x3000 && c <= 0x3004) || (c >= 0x3008 && c <= 0x3020)
        || (c >= 0xFF00 && c <= 0xFF0F);
    return !punctuation;
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
