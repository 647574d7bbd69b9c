#include "platform/voice/engines/espeak_gaps.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <iterator>

namespace tessavox::voice {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Found by speaking every character by itself under the address sanitizer with voices of ten
// scripts. Places that are no character are left out of a text before. In rising order.
constexpr Range unreadable[] = {
    // Greek: accents by themselves, the raised dot, a sign of mathematics.
    { 0x380, 0x385 },
    { 0x387, 0x387 },
    { 0x3F6, 0x3F6 },
    // Devanagari: a sign for abbreviations.
    { 0x970, 0x970 },
    // Bengali: digits, signs of money, signs of old writing.
    { 0x9E6, 0x9EF },
    { 0x9F2, 0x9F3 },
    { 0x9F7, 0x9F9 },
    { 0x9FB, 0x9FB },
    { 0x9FD, 0x9FE },
    // Gurmukhi and Gujarati: digits and signs.
    { 0xA66, 0xA6F },
    { 0xA76, 0xA76 },
    { 0xAE6, 0xAF1 },
    { 0xAFD, 0xAFF },
    // Tamil: digits.
    { 0xBE6, 0xBEF },
    // Kannada: signs and digits.
    { 0xC80, 0xC80 },
    { 0xC84, 0xC84 },
    { 0xCE6, 0xCEF },
    // Malayalam: old letters, fractions and digits.
    { 0xD00, 0xD01 },
    { 0xD04, 0xD04 },
    { 0xD55, 0xD56 },
    { 0xD5B, 0xD5B },
    { 0xD5E, 0xD5F },
    { 0xD62, 0xD62 },
    { 0xD66, 0xD6F },
    // Sinhala: the digits of its astrologers.
    { 0xDE6, 0xDEF },
    // Georgian: the end of a paragraph.
    { 0x10FB, 0x10FB },
    // Korean: letters of old syllables.
    { 0x1180, 0x11A7 },
    { 0x11C3, 0x11FF },
    // A circled letter whose name is too long for a buffer.
    { 0x24DC, 0x24DC },
    // Braille patterns: their names are too long as well, and a program that shows its progress by
    // them should not be heard counting dots.
    { 0x2800, 0x28FF },
};

// The zeros of scripts whose digits are among them.
constexpr char32_t zeros[] = { 0x9E6, 0xA66, 0xAE6, 0xBE6, 0xCE6, 0xD66, 0xDE6 };

} // namespace

char32_t safe_for_espeak(char32_t character)
{
    if (character < unreadable[0].first)
        return character;
    if (u_charType(static_cast<UChar32>(character)) == U_UNASSIGNED)
        return U' ';
    const auto* range = std::ranges::lower_bound(unreadable, character, {}, &Range::last);
    if (range == std::end(unreadable) || character < range->first)
        return character;
    for (const char32_t zero : zeros)
        if (character >= zero && character < zero + 10)
            return U'0' + (character - zero);
    return U' ';
}

} // namespace tessavox::voice
