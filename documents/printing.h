// A text, page after page, on the default printer.
#pragma once

#include "platform/printer.h"
#include "platform/rich_text_pane.h"

#include <string>

namespace tessavox {

/// How far the text keeps from the edges of the paper; twips.
struct PageMargins {
    double left;
    double top;
    double right;
    double bottom;
};

/// Prints the whole text of the pane, whatever is selected, and returns when the last page has been
/// handed over. Where something fails, the pages from there on are missing; nobody is told.
void PrintRichText(
    RichTextPane& pane, Printer& printer, const std::string& title, const PageMargins& margins);

} // namespace tessavox
