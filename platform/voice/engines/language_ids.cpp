#include "platform/voice/engines/language_ids.h"

#include "platform/text.h"

#include <unicode/uloc.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace tessavox::voice {

namespace {

struct LanguageRow {
    std::string_view tag; // lower case
    std::string_view ids;
};

// Languages with several numbers, and those to which ICU gives none, or only that of a script.
constexpr LanguageRow languages[] = {
    { "bn", "445;845" },
    { "bs", "141a;201a" },
    { "cmn", "804" },
    { "es", "c0a;40a" },
    { "es-419", "580a;80a" },
    { "ga", "83c" },
    { "ku", "492" },
    { "nb", "414" },
    { "pt", "816" },
    { "qu", "46b;c6b" },
    { "quc", "486" },
    { "sd", "859" },
    { "smj", "143b;103b" },
    { "sr", "281a;241a;c1a" },
    { "yue", "c04" },
    { "zh", "804" },
};

// A language by itself stands for its first region.
constexpr std::uint32_t primary_languages_end = 0x400;

std::string id_by_icu(const std::string& tag)
{
    std::array<char, ULOC_FULLNAME_CAPACITY> locale{};
    UErrorCode status = U_ZERO_ERROR;
    uloc_forLanguageTag(
        tag.c_str(), locale.data(), static_cast<int32_t>(locale.size()), nullptr, &status);
    std::uint32_t id = U_SUCCESS(status) ? uloc_getLCID(locale.data()) : 0;
    if (id == 0)
        return {};
    if (id < primary_languages_end)
        id += primary_languages_end;
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), id, 16);
    return std::string(digits.data(), end.ptr);
}

} // namespace

std::string language_ids_of(std::string_view tag)
{
    std::string wanted = lower_ascii(tag);
    while (!wanted.empty()) {
        const auto* row = std::ranges::find(languages, wanted, &LanguageRow::tag);
        if (row != std::end(languages))
            return std::string(row->ids);
        if (std::string id = id_by_icu(wanted); !id.empty())
            return id;
        const std::size_t cut = wanted.rfind('-');
        wanted.resize(cut == std::string::npos ? 0 : cut);
    }
    return {};
}

} // namespace tessavox::voice
