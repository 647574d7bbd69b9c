#include "platform/voice/engines/espeak_words.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>

namespace tessavox::voice {

namespace {

// Signs whose names are missing in the languages of their scripts, or too long for a buffer. Found
// by speaking every character by itself under the address sanitizer with voices of ten scripts.
constexpr std::u32string_view nameless = U"\u0387\u0970\u09FD\u0A76\u0AF0\u0C84\u10FB\u24DC";

// What a character is within a word: a script, or one of these.
enum Kind : int {
    neutral = -1, // punctuation, digits, marks above and below letters
    sign = -2, // apostrophes, signs and modifiers
    single = -3, // always alone
};

// A dotted abbreviation holds 80 bytes; a character of it takes at most four and its dot none.
constexpr int longest_abbreviation = 10;

constexpr bool is_between(char32_t character, char32_t first, char32_t last)
{
    return character >= first && character <= last;
}

int kind_of(char32_t character)
{
    constexpr std::u32string_view apostrophes = U"'\u2018\u2019\u02BC\uFF07";
    if (apostrophes.find(character) != std::u32string_view::npos)
        return sign;
    // Archaic Greek letters and Georgian capitals.
    if (is_between(character, 0x3D0, 0x3FF) || is_between(character, 0x10A0, 0x10C5))
        return single;
    const auto point = static_cast<UChar32>(character);
    UErrorCode status = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(point, &status);
    if (script == USCRIPT_COMMON || script == USCRIPT_INHERITED) {
        const bool usual
            = u_ispunct(point) || u_isdigit(point) || (U_GET_GC_MASK(point) & U_GC_M_MASK) != 0;
        return usual || character < 0x100 ? neutral : sign;
    }
    // A Japanese word mixes three scripts.
    const bool japanese
        = script == USCRIPT_HAN || script == USCRIPT_HIRAGANA || script == USCRIPT_KATAKANA;
    return japanese ? USCRIPT_JAPANESE : script;
}

// Words of these scripts often hold an apostrophe, and the library bears it.
bool may_hold_sign(int kind)
{
    return kind == USCRIPT_LATIN || kind == USCRIPT_CYRILLIC || kind == USCRIPT_HEBREW
        || kind == USCRIPT_ARABIC;
}

// Breaks one word, given by its place in the text, where its kinds change.
void break_by_script(
    std::u32string_view text, std::size_t begin, std::size_t end, std::vector<bool>& breaks)
{
    int before = neutral;
    for (std::size_t at = begin; at < end; ++at) {
        const int kind = kind_of(text[at]);
        if (before == single)
            breaks[at] = true;
        if (kind == neutral) {
            before = before == single ? static_cast<int>(neutral) : before;
            continue;
        }
        const bool joined
            = (kind == sign && may_hold_sign(before)) || (before == sign && may_hold_sign(kind));
        if (kind == single || (before != neutral && before != kind && !joined))
            breaks[at] = true;
        if (!joined || kind != sign)
            before = kind;
    }
}

bool needs_vowel(char32_t character)
{
    return is_between(character, 0x531, 0x587) || is_between(character, 0x10D0, 0x10FF);
}

bool is_vowel(char32_t character)
{
    constexpr std::u32string_view vowels = U"ԱԵԷԸԻՈՕաեէըիոօևაეიოუ";
    return vowels.find(character) != std::u32string_view::npos;
}

// Breaks the run without a vowel that ends before `end` into letters.
void break_without_vowel(
    std::u32string_view text, std::size_t begin, std::size_t end, std::vector<bool>& breaks)
{
    const std::u32string_view run = text.substr(begin, end - begin);
    if (std::ranges::any_of(run, needs_vowel) && std::ranges::none_of(run, is_vowel))
        std::fill(breaks.begin() + static_cast<std::ptrdiff_t>(begin),
            breaks.begin() + static_cast<std::ptrdiff_t>(end), true);
}

void break_word(
    std::u32string_view text, std::size_t begin, std::size_t end, std::vector<bool>& breaks)
{
    const auto is_ascii = [](char32_t character) { return character < 0x80; };
    if (!std::ranges::all_of(text.substr(begin, end - begin), is_ascii)) {
        break_by_script(text, begin, end, breaks);
        std::size_t run = begin;
        for (std::size_t at = begin + 1; at <= end; ++at)
            if (at == end || breaks[at]) {
                break_without_vowel(text, run, at, breaks);
                run = at;
            }
    }
    int dotted = 0;
    for (std::size_t at = begin; at < end; ++at)
        if (text[at] == U'.' && ++dotted % longest_abbreviation == 0 && at + 1 < end)
            breaks[at + 1] = true;
    breaks[begin] = false;
}

} // namespace

char32_t safe_for_espeak(char32_t character)
{
    if (character < 0x370)
        return character;
    const auto point = static_cast<UChar32>(character);
    const auto category = u_charType(point);
    if (category == U_DECIMAL_DIGIT_NUMBER && is_between(character, 0x900, 0xDFF))
        return U'0' + static_cast<char32_t>(u_charDigitValue(point));
    const bool sign = category == U_OTHER_NUMBER || category == U_CURRENCY_SYMBOL
        || category == U_MATH_SYMBOL || category == U_MODIFIER_SYMBOL;
    // A program that shows its progress by Braille patterns should not be heard counting dots.
    const bool braille = is_between(character, 0x2800, 0x28FF);
    const bool unreadable = category == U_UNASSIGNED || braille || (sign && character < 0x1200)
        || nameless.find(character) != nameless.npos;
    return unreadable ? U' ' : character;
}

std::vector<bool> breaks_for_espeak(std::u32string_view text)
{
    std::vector<bool> breaks(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(U' ', at), text.size());
        if (end > at)
            break_word(text, at, end, breaks);
        at = end + 1;
    }
    return breaks;
}

} // namespace tessavox::voice
