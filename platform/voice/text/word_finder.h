// Finds the words of a text: what a person would point at when asked for the next word.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tessavox::voice {

/// UTF-16 code units of the text that was searched.
struct FoundWord {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
};

enum class WordRule {
    words, // words, numbers, and signs that are spoken, such as '&' or an emoji
    words_and_punctuation, // every other mark as well
    characters // every character a person sees, but white space
};

/// One word each: "don't", "well-known", "3.14", "12:30", "20%", "$5", "AT&T", "U.S", an emoji
/// however many characters it is made of, a row of one sign ("==="). Scripts beyond Latin follow
/// the word boundaries of UAX #29 with ICU's dictionaries for those without blanks between words.
class WordFinder {
public:
    WordFinder();
    ~WordFinder();
    WordFinder(WordFinder&&) noexcept;
    WordFinder& operator=(WordFinder&&) noexcept;

    /// Appends the words of `text` to `found`, rising and not overlapping.
    void find(std::u16string_view text, WordRule rule, std::vector<FoundWord>& found);

private:
    class Boundaries;
    struct Piece;

    void part_simple(std::u16string_view text, std::uint32_t begin, std::uint32_t end);
    std::uint32_t part_by_icu(std::u16string_view text, std::uint32_t begin);
    void append_pieces(
        std::u16string_view text, WordRule rule, std::vector<FoundWord>& found) const;
    void find_characters(std::u16string_view text, std::vector<FoundWord>& found);

    std::unique_ptr<Boundaries> m_words; // made when the first text needs it
    std::unique_ptr<Boundaries> m_characters;
    std::vector<Piece> m_pieces;
};

} // namespace tessavox::voice
