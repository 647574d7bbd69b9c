#include "platform/voice/engines/phone_tables.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tessavox::voice {

namespace {

struct PhoneRow {
    std::string_view arpabet; // as SAPI 5 and flite name it
    std::string_view espeak;
    std::uint8_t viseme;
    bool vowel;
};

constexpr PhoneRow phones[] = {
    { "ae", "a", 1, true },
    { "ax", "@", 1, true },
    { "ah", "V", 1, true },
    { "aa", "A:", 2, true },
    { "ao", "O:", 3, true },
    { "ey", "eI", 4, true },
    { "eh", "E", 4, true },
    { "uh", "U", 4, true },
    { "er", "3:", 5, true },
    { "axr", "3", 5, true },
    { "y", "j", 6, false },
    { "iy", "i:", 6, true },
    { "ih", "I", 6, true },
    { "ix", "I", 6, true },
    { "w", "w", 7, false },
    { "uw", "u:", 7, true },
    { "ow", "oU", 8, true },
    { "aw", "aU", 9, true },
    { "oy", "OI", 10, true },
    { "ay", "aI", 11, true },
    { "h", "h", 12, false },
    { "hh", "h", 12, false },
    { "hv", "h", 12, false },
    { "r", "r", 13, false },
    { "l", "l", 14, false },
    { "el", "@L", 14, true },
    { "s", "s", 15, false },
    { "z", "z", 15, false },
    { "sh", "S", 16, false },
    { "ch", "tS", 16, false },
    { "jh", "dZ", 16, false },
    { "zh", "Z", 16, false },
    { "th", "T", 17, false },
    { "dh", "D", 17, false },
    { "f", "f", 18, false },
    { "v", "v", 18, false },
    { "d", "d", 19, false },
    { "dx", "t#", 19, false },
    { "t", "t", 19, false },
    { "n", "n", 19, false },
    { "nx", "n", 19, false },
    { "en", "n-", 19, false },
    { "k", "k", 20, false },
    { "g", "g", 20, false },
    { "ng", "N", 20, false },
    { "p", "p", 21, false },
    { "b", "b", 21, false },
    { "m", "m", 21, false },
    { "em", "m-", 21, false },
};

struct PrefixRow {
    std::string_view prefix;
    std::uint8_t viseme;
};

// Mnemonics follow Kirshenbaum's alphabet, so the first letters of a phoneme tell its place in
// the mouth in every language. Longer prefixes stand first.
constexpr PrefixRow espeak_prefixes[] = {
    { "aI", 11 },
    { "aU", 9 },
    { "eI", 4 },
    { "oU", 8 },
    { "OI", 10 },
    { "OY", 10 },
    { "tS", 16 },
    { "dZ", 16 },
    { "ts", 15 },
    { "dz", 15 },
    { "a#", 1 },
    { "aa", 2 },
    { "a", 1 },
    { "A", 2 },
    { "@", 1 },
    { "V", 1 },
    { "&", 1 },
    { "0", 2 },
    { "O", 3 },
    { "o", 8 },
    { "E", 4 },
    { "e", 4 },
    { "U", 4 },
    { "3", 5 },
    { "i", 6 },
    { "I", 6 },
    { "j", 6 },
    { "y", 7 },
    { "Y", 7 },
    { "W", 7 },
    { "w", 7 },
    { "u", 7 },
    { "h", 12 },
    { "H", 12 },
    { "r", 13 },
    { "R", 13 },
    { "l", 14 },
    { "L", 14 },
    { "s", 15 },
    { "z", 15 },
    { "S", 16 },
    { "Z", 16 },
    { "c", 16 },
    { "C", 16 },
    { "J", 16 },
    { "T", 17 },
    { "D", 17 },
    { "f", 18 },
    { "v", 18 },
    { "F", 18 },
    { "d", 19 },
    { "t", 19 },
    { "n", 19 },
    { "k", 20 },
    { "g", 20 },
    { "G", 20 },
    { "N", 20 },
    { "x", 20 },
    { "X", 20 },
    { "q", 20 },
    { "Q", 20 },
    { "p", 21 },
    { "b", 21 },
    { "m", 21 },
    { "M", 21 },
    { "B", 21 },
};

// Longer than any word; keeps what goes to an engine as phonemes well within its buffers.
constexpr std::size_t longest_symbols = 200;

const PhoneRow* find_arpabet(std::string_view name)
{
    const auto* row = std::ranges::find(phones, name, &PhoneRow::arpabet);
    return row == std::end(phones) ? nullptr : row;
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
    std::size_t at = 0;
    while ((at = symbols.find_first_not_of(' ', at)) != std::string_view::npos) {
        const std::size_t end = std::min(symbols.find(' ', at), symbols.size());
        std::string name = lower_ascii(symbols.substr(at, end - at));
        at = end;
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
    return row ? row->viseme : 0;
}

std::uint8_t viseme_of_espeak(std::string_view mnemonic)
{
    if (const auto* row = std::ranges::find(phones, mnemonic, &PhoneRow::espeak);
        row != std::end(phones))
        return row->viseme;
    for (const PrefixRow& row : espeak_prefixes)
        if (mnemonic.starts_with(row.prefix))
            return row.viseme;
    return 0;
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
        if (phone.row->vowel)
            result += phone.stress == '1' ? '1' : '0';
    }
    return result;
}

} // namespace tessavox::voice
