// The menu of a text, as the keyboard opens it.
#pragma once

class QKeyEvent;
class QTextEdit;

namespace tessavox {

/// Whether it is one of the two keys that open a menu on desktops: Menu, and Shift+F10.
bool opens_menu(const QKeyEvent& key);

/// Has the menu that has just been opened stand at the caret of the text, which the user looks at,
/// instead of at the pointer; where the caret is out of sight, at the edge nearest to it.
void bring_menu_to_caret(const QTextEdit& text);

} // namespace tessavox
