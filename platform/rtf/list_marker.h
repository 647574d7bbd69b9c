// What stands before the text of a list paragraph.
#pragma once

#include <string_view>

namespace tessavox::rtf {

/// The marker itself, without the blanks and tabs around it.
std::u16string_view without_blanks(std::u16string_view marker);

/// Whether a marker is a bullet, and no number, letter or other text that says something.
bool is_bullet(std::u16string_view marker);

} // namespace tessavox::rtf
