// The text of the web page that a document shows.
#pragma once

#include "platform/text.h"

namespace tessavox {

class Clipboard;
struct DocumentControls;

/// Whether the address in the box ends as that of a document which a viewer shows: of that only
/// what the user has copied by hand can be read.
bool shows_document(const DocumentControls& document);

/// What is selected on the page, or else all of it, which then is selected. It comes over the
/// clipboard and stays there; what lay there before is lost. @throws Failure if the page can't have
/// the focus.
TextSlice copied_page_text(DocumentControls& document, Clipboard& clipboard);

} // namespace tessavox
