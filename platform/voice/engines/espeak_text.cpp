#include "platform/voice/engines/espeak_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

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

// Reads the code point at `at` and moves behind it.
char32_t next_character(std::u16string_view text, std::size_t& at)
{
    const char16_t unit = text[at++];
    const bool pair = unit >= 0xD800 && unit < 0xDC00 && at < text.size() && text[at] >= 0xDC00
        && text[at] < 0xE000;
    if (!pair)
        return harmless(unit);
    const char32_t low = text[at++];
    return harmless(0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (low - 0xDC00));
}

void append_utf8(std::string& out, char32_t character)
{
    const auto byte = [&](char32_t value) { out += static_cast<char>(value); };
    if (character < 0x80) {
        byte(character);
    } else if (character < 0x800) {
        byte(0xC0 | character >> 6);
        byte(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        byte(0xE0 | character >> 12);
        byte(0x80 | (character >> 6 & 0x3F));
        byte(0x80 | (character & 0x3F));
    } else {
        byte(0xF0 | character >> 18);
        byte(0x80 | (character >> 12 & 0x3F));
        byte(0x80 | (character >> 6 & 0x3F));
        byte(0x80 | (character & 0x3F));
    }
}

std::u32string characters_of(std::u16string_view text)
{
    std::u32string characters;
    for (std::size_t at = 0; at < text.size();)
        characters += next_character(text, at);
    return characters;
}

// Whether a token is a mark rather than a word: ASCII without letter or digit, or general
// punctuation.
bool is_mark(std::u16string_view token)
{
    return !token.empty() && std::ranges::all_of(token, [](char16_t unit) {
        const bool ascii_mark = unit < 0x80 && !is_digit(unit) && !is_ascii_letter(unit);
        return ascii_mark || (unit >= 0x2010 && unit < 0x2060) || unit == 0xAB || unit == 0xBB
            || unit == 0xA1 || unit == 0xBF || (unit >= 0x3001 && unit < 0x3004);
    });
}

class PieceBuilder {
public:
    PieceBuilder(const Utterance& utterance)
        : m_utterance(utterance)
    {
    }

    // The words from `begin` to `end`. `first` is the first token at or behind `begin`.
    void add_words(std::size_t begin, std::size_t end, std::uint32_t first)
    {
        const std::u16string_view text(m_utterance.text.data(), end);
        PlainPiece piece;
        bool blank = true;
        std::uint32_t token = first;
        for (std::size_t at = begin; at < end;) {
            while (token + 1 < m_utterance.tokens.size() && token_end(token) <= at)
                ++token;
            const char32_t character = next_character(text, at);
            blank = blank && character == U' ';
            append_utf8(piece.utf8, character);
            piece.tokens.push_back(token);
        }
        if (!blank)
            m_pieces.emplace_back(std::move(piece));
    }

    void add_names(std::uint32_t token)
    {
        m_pieces.emplace_back(NamedPiece{ characters_of(token_text(token)), token });
    }

    std::u16string_view token_text(std::uint32_t token) const
    {
        const std::u16string_view text = m_utterance.text;
        const std::size_t begin
            = std::min<std::size_t>(m_utterance.tokens[token].begin, text.size());
        return text.substr(begin, m_utterance.tokens[token].length);
    }

    std::size_t token_end(std::uint32_t token) const
    {
        return std::size_t{ m_utterance.tokens[token].begin } + m_utterance.tokens[token].length;
    }

    std::vector<EspeakPiece> take() { return std::move(m_pieces); }

private:
    const Utterance& m_utterance;
    std::vector<EspeakPiece> m_pieces;
};

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
void name_the_month(PlainPiece& piece, std::size_t month)
{
    PlainPiece named;
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
        named.utf8 += said;
        named.tokens.insert(named.tokens.end(), said.size(), piece.tokens[code_point]);
        code_point += length;
        at += length;
    }
    if (numbers == 2 || numbers == 3)
        piece = std::move(named);
}

void part_digits(PlainPiece& piece)
{
    PlainPiece parted;
    std::size_t code_point = 0;
    for (std::size_t at = 0; at < piece.utf8.size(); ++at) {
        const bool continues = (static_cast<unsigned char>(piece.utf8[at]) & 0xC0) == 0x80;
        parted.utf8 += piece.utf8[at];
        if (continues)
            continue;
        const std::uint32_t token = piece.tokens[code_point++];
        parted.tokens.push_back(token);
        if (is_digit(static_cast<unsigned char>(piece.utf8[at])) && at + 1 < piece.utf8.size()) {
            parted.utf8 += ' ';
            parted.tokens.push_back(token);
        }
    }
    piece = std::move(parted);
}

void apply_context(PlainPiece& piece, const std::string& context, bool english)
{
    if (const auto month = month_place(context); month && english)
        name_the_month(piece, *month);
    else if (context == "phone_number" || context == "number_digit")
        part_digits(piece);
}

} // namespace

std::vector<EspeakPiece> espeak_pieces(const Utterance& utterance, bool english)
{
    PieceBuilder builder(utterance);
    std::size_t begin = 0;
    std::uint32_t first = 0;
    const auto count = static_cast<std::uint32_t>(utterance.tokens.size());
    const bool marks = utterance.style.speak_punctuation;
    for (std::uint32_t token = 0; token < count && (utterance.style.spell || marks); ++token) {
        const Token& place = utterance.tokens[token];
        if (!utterance.style.spell && !is_mark(builder.token_text(token)))
            continue;
        if (!utterance.style.spell && place.begin > begin)
            builder.add_words(
                begin, std::min<std::size_t>(place.begin, utterance.text.size()), first);
        builder.add_names(token);
        begin = builder.token_end(token);
        first = token + 1;
    }
    if ((!utterance.style.spell || count == 0) && begin < utterance.text.size())
        builder.add_words(begin, utterance.text.size(), first);
    std::vector<EspeakPiece> pieces = builder.take();
    for (EspeakPiece& piece : pieces)
        if (auto* words = std::get_if<PlainPiece>(&piece);
            words && !utterance.style.context.empty())
            apply_context(*words, utterance.style.context, english);
    return pieces;
}

} // namespace tessavox::voice
