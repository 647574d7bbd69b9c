// The title bar of a document's window within the main window.
#pragma once

class QPainter;
class QStyle;
class QStyleOptionTitleBar;
class QWidget;

namespace tessavox {

/// Flat, where `style` puts its parts: in the colours of what is selected when the window is the
/// active one, and else in those of the window around it. So all of it can be read, in high
/// contrast too.
void draw_title_bar(const QStyleOptionTitleBar& option, QPainter& painter, const QStyle& style,
    const QWidget* widget);

} // namespace tessavox
