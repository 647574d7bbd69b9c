// How large a document may be.
#pragma once

#include <cstddef>

namespace tessavox {

// What is larger is refused with a plain message: a text pane would hold it, but never finish
// showing it.
constexpr std::size_t most_text_bytes = std::size_t(64) << 20;
constexpr std::size_t most_text_paragraphs = 1'000'000;
// A paragraph is laid out at once, in a second for each million.
constexpr std::size_t most_paragraph_units = 8'000'000;

} // namespace tessavox
