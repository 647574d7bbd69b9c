// Keeps texts legible in places whose size the layout fixes, whatever font the user has chosen. A
// text is never drawn smaller than its neighbours.
#pragma once

#include <QFont>
#include <QString>

class QWidget;

namespace tessavox {

/// `font`, with the letters moved together by half a pixel at most if `text` is wider than `width`
/// pixels. An ampersand that marks a key doesn't count.
QFont fitted_font(QFont font, const QString& text, int width);

/// What of `text` is shown: all of it, or as much of its start as fits, and an ellipsis.
QString fitted_text(const QFont& font, const QString& text, int width);

/// Gives the widget `font`, fitted to the text, and returns what of the text is shown.
QString fit_text(QWidget& widget, const QFont& font, const QString& text, int width);

/// The tool tip of a widget that shows `shown` of `text`: its own, `tip`, after the whole text
/// where that is cut.
QString tip_for(const QString& text, const QString& shown, const QString& tip);

} // namespace tessavox
