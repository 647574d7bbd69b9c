#include "platform/voice/engines/language_ids.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

struct LanguageRow {
    std::string_view tag; // lower case
    std::string_view ids;
};

constexpr LanguageRow languages[] = {
    { "af", "436" },
    { "am", "45e" },
    { "ar", "401" },
    { "as", "44d" },
    { "az", "42c" },
    { "ba", "46d" },
    { "be", "423" },
    { "bg", "402" },
    { "bn", "445;845" },
    { "bs", "141a;201a" },
    { "ca", "403" },
    { "chr", "45c" },
    { "cmn", "804" },
    { "cs", "405" },
    { "cy", "452" },
    { "da", "406" },
    { "de", "407" },
    { "el", "408" },
    { "en", "409" },
    { "en-029", "2409" },
    { "en-gb", "809" },
    { "en-us", "409" },
    { "es", "c0a;40a" },
    { "es-419", "580a;80a" },
    { "et", "425" },
    { "eu", "42d" },
    { "fa", "429" },
    { "fi", "40b" },
    { "fr", "40c" },
    { "fr-be", "80c" },
    { "fr-ch", "100c" },
    { "ga", "83c" },
    { "gd", "491" },
    { "gn", "474" },
    { "gu", "447" },
    { "haw", "475" },
    { "he", "40d" },
    { "hi", "439" },
    { "hr", "41a" },
    { "hu", "40e" },
    { "hy", "42b" },
    { "id", "421" },
    { "is", "40f" },
    { "it", "410" },
    { "ja", "411" },
    { "ka", "437" },
    { "kk", "43f" },
    { "kl", "46f" },
    { "kn", "44b" },
    { "ko", "412" },
    { "kok", "457" },
    { "ku", "492" },
    { "ky", "440" },
    { "la", "476" },
    { "lb", "46e" },
    { "lt", "427" },
    { "lv", "426" },
    { "mi", "481" },
    { "mk", "42f" },
    { "ml", "44c" },
    { "mr", "44e" },
    { "ms", "43e" },
    { "mt", "43a" },
    { "my", "455" },
    { "nb", "414" },
    { "ne", "461" },
    { "nl", "413" },
    { "om", "472" },
    { "or", "448" },
    { "pa", "446" },
    { "pap", "479" },
    { "pl", "415" },
    { "pt", "816" },
    { "pt-br", "416" },
    { "qu", "46b;c6b" },
    { "quc", "486" },
    { "ro", "418" },
    { "ru", "419" },
    { "sd", "859" },
    { "si", "45b" },
    { "sk", "41b" },
    { "sl", "424" },
    { "smj", "143b;103b" },
    { "sq", "41c" },
    { "sr", "281a;241a;c1a" },
    { "sv", "41d" },
    { "sw", "441" },
    { "ta", "449" },
    { "te", "44a" },
    { "th", "41e" },
    { "tk", "442" },
    { "tn", "432" },
    { "tr", "41f" },
    { "tt", "444" },
    { "ug", "480" },
    { "uk", "422" },
    { "ur", "420" },
    { "uz", "443" },
    { "vi", "42a" },
    { "yue", "c04" },
    { "zh", "804" },
};

} // namespace

std::string language_ids_of(std::string_view tag)
{
    std::string wanted(tag);
    for (char& letter : wanted)
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    while (!wanted.empty()) {
        const auto* row = std::ranges::find(languages, wanted, &LanguageRow::tag);
        if (row != std::end(languages))
            return std::string(row->ids);
        const std::size_t cut = wanted.rfind('-');
        wanted.resize(cut == std::string::npos ? 0 : cut);
    }
    return {};
}

} // namespace tessavox::voice
