// Rich text (RTF) as files and the clipboard have it, given out.
#pragma once

#include "platform/rtf/document.h"

#include <string>

namespace tessavox::rtf {

/// ASCII throughout, so that it survives any way of handing it on. The reader makes an equal
/// document of it; word processors understand all of it but the last twips of an offset, which
/// rich text has in half-points only. Measures are expected within the limits of document.h.
std::string write_rich_text(
    const Document& document, LastParagraph last_paragraph = LastParagraph::closed);

} // namespace tessavox::rtf
