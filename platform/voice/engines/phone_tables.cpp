#include "platform/voice/engines/phone_tables.h"

#include "platform/split.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tessavox::voice {

namespace {

struct PhoneRow {
    std::string_view arpabet; // as SAPI 5 and flite name it
    std::string_view espeak;
};

constexpr PhoneRow phones[] = { { "ae", "a" }, { "ax", "@" }, { "ah", "V" }, { "aa", "A:" },
    { "ao", "O:" }, { "ey", "eI" }, { "eh", "E" }, { "uh", "U" }, { "er", "3:" }, { "axr", "3" },
    { "y", "j" }, { "iy", "i:" }, { "ih", "I" }, { "ix", "I" }, { "w", "w" }, { "uw", "u:" },
    { "ow", "oU" }, { "aw", "aU" }, { "oy", "OI" }, { "ay", "aI" }, { "h", "h" }, { "hh", "h" },
    { "hv", "h" }, { "r", "r" }, { "l", "l" }, { "el", "@L" }, { "s", "s" }, { "z", "z" },
    { "sh", "S" }, { "ch", "tS" }, { "jh", "dZ" }, { "zh", "Z" }, { "th", "T" }, { "dh", "D" },
    { "f", "f" }, { "v", "v" }, { "d", "d" }, { "dx", "t#" }, { "t", "t" }, { "n", "n" },
    { "nx", "n" }, { "en", "n-" }, { "k", "k" }, { "g", "g" }, { "ng", "N" }, { "p", "p" },
    { "b", "b" }, { "m", "m" }, { "em", "m-" } };

// What espeak-ng's phonemes of each viseme begin with. Its mnemonics follow Kirshenbaum's alphabet,
// so the first letters tell the place in the mouth in every language.
constexpr std::string_view espeak_starts[] = {
    "", // silence
    "a a# @ V &",
    "A 0 aa",
    "O",
    "eI E e U",
    "3",
    "i I j",
    "y Y W w u",
    "oU o",
    "aU",
    "OI OY",
    "aI",
    "h H",
    "r R",
    "l L @L",
    "s z ts dz",
    "tS dZ S Z c C J",
    "T D",
    "f v F",
    "d t n",
    "k g G N x X q Q",
    "p b m M B",
};

// Longer than any word; keeps what goes to an engine as phonemes well within its buffers.
constexpr std::size_t longest_symbols = 200;

const PhoneRow* find_arpabet(std::string_view name)
{
    const auto* row = std::ranges::find(phones, name, &PhoneRow::arpabet);
    return row == std::end(phones) ? nullptr : row;
}

bool takes_stress(std::string_view arpabet)
{
    return std::string_view("aeiou").find(arpabet.front()) != std::string_view::npos
        && arpabet != "en" && arpabet != "em";
}

struct SapiPhone {
    const PhoneRow* row;
    char stress = 0; // '1' or '2', which SAPI writes after the vowel
};

// Syllable, word and sentence boundaries carry no sound of their own.
bool is_boundary(std::string_view symbol)
{
    constexpr std::array<std::string_view, 7> boundaries{ "-", "&", "_", ",", ".", "!", "?" };
    return std::ranges::find(boundaries, symbol) != boundaries.end();
}

std::optional<std::vector<SapiPhone>> parse_sapi(std::string_view symbols)
{
    if (symbols.size() > longest_symbols)
        return std::nullopt;
    std::vector<SapiPhone> result;
    for (const std::string_view part : split(symbols, ' ')) {
        std::string name = lower_ascii(part);
        if (name.empty())
            continue;
        char stress = 0;
        if (name.back() == '0' || name.back() == '1' || name.back() == '2') {
            stress = name.back();
            name.pop_back();
        }
        if (!name.empty() && !is_boundary(name)) {
            const PhoneRow* row = find_arpabet(name);
            if (!row)
                return std::nullopt;
            result.push_back({ row });
        }
        if (stress == '1' || stress == '2') {
            if (result.empty())
                return std::nullopt;
            result.back().stress = stress;
        }
    }
    if (result.empty())
        return std::nullopt;
    return result;
}

} // namespace

std::uint8_t viseme_of_arpabet(std::string_view phone)
{
    while (!phone.empty() && phone.back() >= '0' && phone.back() <= '9')
        phone.remove_suffix(1);
    const PhoneRow* row = find_arpabet(phone);
    return row ? viseme_of_espeak(row->espeak) : 0;
}

// The longest start decides.
std::uint8_t viseme_of_espeak(std::string_view mnemonic)
{
    std::size_t longest = 0;
    std::size_t found = 0;
    for (std::size_t viseme = 0; viseme < std::size(espeak_starts); ++viseme)
        for (const std::string_view start : split(espeak_starts[viseme], ' ')) {
            if (start.size() > longest && mnemonic.starts_with(start)) {
                longest = start.size();
                found = viseme;
            }
        }
    return static_cast<std::uint8_t>(found);
}

std::optional<std::string> espeak_phonemes_of_sapi(std::string_view symbols)
{
    const auto parsed = parse_sapi(symbols);
    if (!parsed)
        return std::nullopt;
    std::string result;
    for (const SapiPhone& phone : *parsed) {
        if (phone.stress)
            result += phone.stress == '1' ? '\'' : ',';
        result += phone.row->espeak;
    }
    return result;
}

std::optional<std::string> flite_phones_of_sapi(std::string_view symbols)
{
    const auto parsed = parse_sapi(symbols);
    if (!parsed)
        return std::nullopt;
    std::string result;
    for (const SapiPhone& phone : *parsed) {
        result += result.empty() ? "" : " ";
        result += phone.row->arpabet == "h" ? "hh" : phone.row->arpabet;
        if (takes_stress(phone.row->arpabet))
            result += phone.stress == '1' ? '1' : '0';
    }
    return result;
}

} // namespace tessavox::voice
