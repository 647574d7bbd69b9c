// The two faces of a document window: the text view and the web view.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

struct DocumentControls;
struct MainControls;

/// Puts the window in the text layout, moves the focus into the text and sets the main window's
/// tool bars and menus to match. A move that would give a control a negative size is left out.
/// `focused` runs right after the move of the focus.
void control_pos(DocumentControls& document, MainControls& main, const Handler& focused);

/// The same for the web layout.
void control_pos2(DocumentControls& document, MainControls& main);

/// What a change of the window's size does first: fits the text pane, and the width at which the
/// text wraps, to the main window rather than to the document's own.
void fit_text_pane(DocumentControls& document, const MainControls& main);

} // namespace tessavox
