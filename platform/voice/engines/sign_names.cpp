#include "platform/voice/engines/sign_names.h"

#include "platform/text.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>

namespace tessavox::voice {

namespace {

// What people call some marks otherwise than Unicode does.
struct MarkRow {
    char32_t mark;
    std::string_view name;
};
constexpr MarkRow usual_names[] = { { U'"', "quote" }, { U'$', "dollar" }, { U'%', "percent" },
    { U'&', "and" }, { U'+', "plus" }, { U'-', "dash" }, { U'.', "period" }, { U'/', "slash" },
    { U'<', "less than" }, { U'=', "equals" }, { U'>', "greater than" }, { U'@', "at" },
    { U'\\', "backslash" }, { U'^', "caret" }, { U'_', "underscore" }, { U'`', "backquote" },
    { U'|', "vertical bar" } };

// The letters of flags, from A.
constexpr char32_t first_flag_letter = 0x1F1E6;
constexpr char32_t last_flag_letter = 0x1F1FF;

} // namespace

std::string english_name(char32_t sign)
{
    const auto* usual = std::ranges::find(usual_names, sign, &MarkRow::mark);
    if (usual != std::end(usual_names))
        return std::string(usual->name);
    if (sign >= first_flag_letter && sign <= last_flag_letter)
        return std::string(1, static_cast<char>('A' + (sign - first_flag_letter)));
    const auto point = static_cast<UChar32>(sign);
    const uint32_t shapers = U_GC_M_MASK | U_GC_CF_MASK | U_GC_SK_MASK;
    if (((U_GET_GC_MASK(point) & shapers) != 0 && sign >= 0x80) || u_isalnum(point)
        || !u_isgraph(point))
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
