// What a character means to a reader who looks for the ends of sentences.
#pragma once

#include <array>
#include <cstdint>

namespace tessavox::voice {

enum class ReadingKind : std::uint8_t {
    plain,
    white, // control characters too: engines take some of them for commands
    terminator, // may end a sentence if white space follows
    wide_terminator, // ends a sentence by itself
    markup, // '<' or '&'
    surrogate
};

constexpr std::array<ReadingKind, 0x80> ascii_reading_kinds = [] {
    std::array<ReadingKind, 0x80> kinds{};
    for (int c = 0; c <= 0x20; ++c)
        kinds[static_cast<std::size_t>(c)] = ReadingKind::white;
    kinds[0x7F] = ReadingKind::white;
    kinds[u'.'] = kinds[u'!'] = kinds[u'?'] = ReadingKind::terminator;
    kinds[u'<'] = kinds[u'&'] = ReadingKind::markup;
    return kinds;
}();

/// For characters from U+0080.
ReadingKind wide_reading_kind(char16_t c);

inline ReadingKind reading_kind(char16_t c)
{
    if (c < 0x80)
        return ascii_reading_kinds[c];
    if (c > 0xA0 && c < 0x0589)
        return ReadingKind::plain;
    return wide_reading_kind(c);
}

inline bool is_white(char16_t c)
{
    return reading_kind(c) == ReadingKind::white;
}

/// Closing quotes and brackets, which belong to the sentence that ends before them.
bool is_closer(char16_t c);
/// Opening quotes and brackets, and the marks that Spanish opens with.
bool is_opener(char16_t c);

/// A sign that begins the row of a list.
bool is_bullet(char16_t c);

constexpr std::uint32_t paragraph_line_ends = 2;

/// How many line ends `c` counts; a carriage return counts with its line feed.
std::uint32_t line_ends_of(char16_t c, char16_t next);

/// A letter or digit, as far as one unit can tell: two of them must not run together.
bool is_wordish(char16_t c);

} // namespace tessavox::voice
