// Finding a piece of text in a document, as the Find dialog asks for it.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace tessavox {

/// What `options` of a search is the sum of.
constexpr int find_whole_word = 2;
constexpr int find_match_case = 4;

/// Keeps what a search for whole words needs, so that thousands of them don't prepare it anew.
/// Costs some milliseconds for ten million units that hold no match.
class TextSearch {
public:
    TextSearch();
    ~TextSearch();

    /// The offset of the first match that begins at `start` or after it. It is as long as `wanted`,
    /// and an empty `wanted` matches nothing. Without find_match_case characters are alike that
    /// Unicode folds to the same one (simple folding, so lengths stay). A whole word has a word
    /// boundary of Unicode's (UAX 29) at either end.
    std::optional<std::size_t> find(
        std::u16string_view text, std::u16string_view wanted, std::size_t start, int options);

private:
    class Words;
    std::unique_ptr<Words> m_words; // from the first doubtful word on
};

} // namespace tessavox
