// What the desktop's style leaves to be mended.
#pragma once

#include <QProxyStyle>

namespace tessavox {

/// Draws as the style of the desktop does, but for this:
/// - The line around a pane is at least one pixel of the display thick. At scalings such as 125 %
///   it would fall between two pixels, and out of sight.
/// - What is disabled can still be read, in dark colours too. So can what is selected, and its
///   colour can be seen beside the window's.
/// - Three shades have a meaning, which a skin can count on: Mid is a line that can be seen,
///   Midlight a button that is pointed at, Dark one that is pressed.
/// - Arrows are thin lines in the colour of the text, and check boxes, buttons and fields have an
///   edge that can be seen.
/// - The title bar of a document's window is flat, its text can be read, and its edge be seen.
/// - The signs on a document's window buttons have the colour of the text.
/// - The popup of a list has a limited height and a scroll bar, where some styles would cover the
///   whole screen as if it were a menu.
/// - The buttons of dialogs have no icons.
/// - No caret blinks at the side of what is selected, such as the word that is being read.
class ProgramStyle : public QProxyStyle {
public:
    void polish(QPalette& palette) override;
    using QProxyStyle::polish;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
        QPainter* painter, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
        QStyleHintReturn* result) const override;
    QIcon standardIcon(
        StandardPixmap sign, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace tessavox
