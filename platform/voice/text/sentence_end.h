// Tells a full stop that ends a sentence from one that does not.
#pragma once

#include <string_view>

namespace tessavox::voice {

/// Whether a sentence ends with `text`, which ends in a full stop, question or exclamation mark,
/// closing quotes and brackets after it included. White space follows, and then `next`, the first
/// character of the next word, opening quotes and brackets left out; 0 if nobody knows.
bool sentence_ends(std::u16string_view text, char16_t next);

/// The first character of the word that `rest` begins with, opening quotes and brackets left out,
/// or 0 if that takes reading markup.
char16_t next_letter(std::u16string_view rest);

} // namespace tessavox::voice
