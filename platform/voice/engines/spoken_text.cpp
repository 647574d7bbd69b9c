#include "platform/voice/engines/spoken_text.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace tessavox::voice {

namespace {

constexpr std::array<std::string_view, 12> months{ "January", "February", "March", "April", "May",
    "June", "July", "August", "September", "October", "November", "December" };

bool is_digit(char32_t character)
{
    return character >= U'0' && character <= U'9';
}

bool is_ascii_letter(char32_t character)
{
    return (character >= U'a' && character <= U'z') || (character >= U'A' && character <= U'Z');
}

// Characters that are no sound but could be a command: C0 and C1 controls, surrogates, and the
// private ones, which the library uses for its own ends.
char32_t harmless(char32_t character)
{
    const bool control = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    const bool private_use = (character >= 0xE000 && character < 0xF900) || character >= 0xE0000;
    return control || surrogate || private_use ? U' ' : character;
}

// Which of the numbers of a date is the month, counted from 0.
std::optional<std::size_t> month_place(std::string_view context)
{
    struct ContextRow {
        std::string_view context;
        std::size_t place;
    };
    constexpr ContextRow rows[] = { { "date_mdy", 0 }, { "date_md", 0 }, { "date_my", 0 },
        { "date_dmy", 1 }, { "date_dm", 1 }, { "date_ymd", 1 }, { "date_ym", 1 } };
    const auto* row = std::ranges::find(rows, context, &ContextRow::context);
    if (row == std::end(rows))
        return std::nullopt;
    return row->place;
}

std::string_view name_of_month(std::string_view digits)
{
    int month = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), month);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    return whole && month >= 1 && month <= 12 ? months[static_cast<std::size_t>(month - 1)]
                                              : std::string_view();
}

// "12/25/2003" becomes "December 25 2003" where the context says that the month is in front.
// Anything that doesn't look so stays as it is.
void name_the_month(SpokenText& piece, std::size_t month)
{
    SpokenText named;
    std::size_t numbers = 0;
    std::size_t code_point = 0;
    const std::string& text = piece.utf8;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_not_of("0123456789", at), text.size());
        const auto letter = static_cast<unsigned char>(text[at]);
        if (letter >= 0x80 || is_ascii_letter(letter))
            return;
        std::string_view said(text.data() + at, end == at ? 1 : end - at);
        const std::size_t length = said.size();
        if (end == at && (letter == '/' || letter == '-' || letter == '.'))
            said = " ";
        else if (end != at && numbers++ == month)
            said = name_of_month(said);
        if (said.empty())
            return;
        named.append(said, piece.tokens[code_point]);
        code_point += length;
        at += length;
    }
    if (numbers == 2 || numbers == 3)
        piece = std::move(named);
}

void part_digits(SpokenText& piece)
{
    SpokenText parted;
    std::size_t code_point = 0;
    for (std::size_t at = 0; at < piece.utf8.size();) {
        const char32_t character = next_character(piece.utf8, at);
        const std::uint32_t token = piece.tokens[code_point++];
        parted.append(character, token);
        if (is_digit(character) && at < piece.utf8.size())
            parted.append(" ", token);
    }
    piece = std::move(parted);
}

} // namespace

void SpokenText::append(std::string_view ascii, std::uint32_t token)
{
    utf8 += ascii;
    tokens.insert(tokens.end(), ascii.size(), token);
}

void SpokenText::append(char32_t character, std::uint32_t token)
{
    append_character(utf8, character);
    tokens.push_back(token);
}

void SpokenText::append(const SpokenText& text)
{
    utf8 += text.utf8;
    tokens.insert(tokens.end(), text.tokens.begin(), text.tokens.end());
}

char32_t next_harmless(std::u16string_view text, std::size_t& at)
{
    return harmless(next_character(text, at));
}

bool is_mark(std::u16string_view token)
{
    return !token.empty() && std::ranges::all_of(token, [](char16_t unit) {
        const bool ascii_mark = unit < 0x80 && !is_digit(unit) && !is_ascii_letter(unit);
        return ascii_mark || (unit >= 0x2010 && unit < 0x2060) || unit == 0xAB || unit == 0xBB
            || unit == 0xA1 || unit == 0xBF || (unit >= 0x3001 && unit < 0x3004);
    });
}

std::u16string_view token_text(const Utterance& utterance, std::uint32_t token)
{
    const std::u16string_view text = utterance.text;
    const std::size_t begin = std::min<std::size_t>(utterance.tokens[token].begin, text.size());
    return text.substr(begin, utterance.tokens[token].length);
}

std::size_t token_end(const Utterance& utterance, std::uint32_t token)
{
    const Token& place = utterance.tokens[token];
    return std::min(std::size_t{ place.begin } + place.length, utterance.text.size());
}

std::vector<ContextStretch> context_stretches(
    const Utterance& utterance, std::size_t begin, std::size_t end)
{
    std::vector<ContextStretch> stretches;
    const auto add = [&](std::size_t to, std::string_view context) {
        to = std::min(to, end);
        if (to > begin)
            stretches.push_back({ std::exchange(begin, to), to, context });
    };
    for (const ContextHint& hint : utterance.contexts) {
        add(hint.begin, {});
        add(std::size_t{ hint.begin } + hint.length, hint.context);
    }
    add(end, {});
    return stretches;
}

void apply_context(SpokenText& text, std::string_view context, bool english)
{
    if (const auto month = month_place(context); month && english)
        name_the_month(text, *month);
    else if (context == "phone_number" || context == "number_digit")
        part_digits(text);
}

} // namespace tessavox::voice
