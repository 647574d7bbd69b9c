// Rich text (RTF) as files and the clipboard have it, taken in.
#pragma once

#include "platform/rtf/document.h"

#include <string_view>

namespace tessavox::rtf {

/// Whether the bytes begin as rich text does; a byte order mark and blanks before that are allowed.
bool is_rich_text(std::string_view bytes);

/// The text that a reader of the page would see, with its formats. Tables become lines with tabs;
/// pictures, headers, footers, notes, hidden and deleted text are left out; numbers of lists become
/// text, bullets a format. Text that breaks off or has mistakes gives what could be understood.
///
/// Takes time and memory in proportion to the bytes, whatever they are, and calls itself nowhere.
/// @throws Failure for bytes that don't begin as rich text, for more than most_text_bytes, for more
/// than most_text_paragraphs, and for one of more than most_paragraph_units.
Document read_rich_text(
    std::string_view bytes, LastParagraph last_paragraph = LastParagraph::closed);

} // namespace tessavox::rtf
