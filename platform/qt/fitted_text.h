// Keeps texts whole in places whose size the layout fixes, whatever font the user has chosen.
#pragma once

#include <QFont>
#include <QString>

class QSize;
class QWidget;

namespace tessavox {

/// `font`, or the largest smaller one (down to a legible minimum) in which `text` fits into `room`
/// (pixels).
QFont fitted_font(QFont font, const QString& text, const QSize& room);

/// Gives the widget the application's font times `scale`, fitted to `text` and `room`. Returns the
/// text, its end replaced by an ellipsis where even the smallest font is too wide. An ampersand
/// that marks a key doesn't count.
QString fit_text(QWidget& widget, const QString& text, const QSize& room, double scale = 1);

} // namespace tessavox
