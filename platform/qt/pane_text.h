// What a text pane can hold, and how other text is made to fit.
#pragma once

#include <string>
#include <string_view>

namespace tessavox {

/// CRLF and CR become LF; NUL and the code units with which the pane marks frames and objects
/// (U+FDD0, U+FDD1, U+FFFC) become U+FFFD. Everything else stays as it is.
std::u16string fit_for_pane(std::u16string text);

/// Whether the text has a run of so many characters without a place to break a line that looking
/// for such places would take minutes; it grows with the square of the run.
bool has_endless_word(std::u16string_view text);

} // namespace tessavox
