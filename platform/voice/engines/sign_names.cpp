#include "platform/voice/engines/sign_names.h"

#include "platform/text.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>

namespace tessavox::voice {

namespace {

struct MarkRow {
    char mark;
    std::string_view name;
};

constexpr MarkRow marks[] = {
    { '!', "exclamation mark" },
    { '"', "quote" },
    { '#', "number sign" },
    { '$', "dollar" },
    { '%', "percent" },
    { '&', "and" },
    { '\'', "apostrophe" },
    { '(', "left parenthesis" },
    { ')', "right parenthesis" },
    { '*', "asterisk" },
    { '+', "plus" },
    { ',', "comma" },
    { '-', "dash" },
    { '.', "period" },
    { '/', "slash" },
    { ':', "colon" },
    { ';', "semicolon" },
    { '<', "less than" },
    { '=', "equals" },
    { '>', "greater than" },
    { '?', "question mark" },
    { '@', "at" },
    { '[', "left bracket" },
    { '\\', "backslash" },
    { ']', "right bracket" },
    { '^', "caret" },
    { '_', "underscore" },
    { '`', "backquote" },
    { '{', "left brace" },
    { '|', "vertical bar" },
    { '}', "right brace" },
    { '~', "tilde" },
};

// The letters of flags, from A.
constexpr char32_t first_flag_letter = 0x1F1E6;
constexpr char32_t last_flag_letter = 0x1F1FF;

} // namespace

std::string_view name_of_mark(char mark)
{
    const auto* row = std::ranges::find(marks, mark, &MarkRow::mark);
    return row == std::end(marks) ? std::string_view() : row->name;
}

std::string english_name(char32_t sign)
{
    if (sign < 0x80)
        return std::string(name_of_mark(static_cast<char>(sign)));
    if (sign >= first_flag_letter && sign <= last_flag_letter)
        return std::string(1, static_cast<char>('A' + (sign - first_flag_letter)));
    const auto point = static_cast<UChar32>(sign);
    const uint32_t shapers = U_GC_M_MASK | U_GC_CF_MASK | U_GC_SK_MASK;
    if ((U_GET_GC_MASK(point) & shapers) != 0)
        return {};
    std::array<char, 128> name{};
    UErrorCode status = U_ZERO_ERROR;
    u_charName(point, U_UNICODE_CHAR_NAME, name.data(), static_cast<std::int32_t>(name.size()) - 1,
        &status);
    std::string words = lower_ascii(U_SUCCESS(status) ? name.data() : "");
    std::ranges::replace(words, '-', ' ');
    return words;
}

std::string english_names(std::u32string_view signs)
{
    std::string names;
    char32_t before = 0;
    for (const char32_t sign : signs) {
        const std::string name = sign == before ? std::string() : english_name(sign);
        if (!name.empty())
            names += (names.empty() ? "" : " ") + name;
        before = sign;
    }
    return names;
}

} // namespace tessavox::voice
