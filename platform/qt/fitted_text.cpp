#include "platform/qt/fitted_text.h"

#include <QApplication>
#include <QFontMetrics>
#include <QWidget>

namespace tessavox {
namespace {

constexpr double smallest_legible_points = 7;

QFont resized(QFont font, double points)
{
    font.setPointSizeF(points);
    return font;
}

} // namespace

QFont fitted_font(QFont font, const QString& text, const QSize& room)
{
    const double smallest = std::min(smallest_legible_points, font.pointSizeF());
    const auto fits = [&] {
        const QSize size = QFontMetrics(font).size(Qt::TextShowMnemonic, text);
        return size.width() <= room.width() && size.height() <= room.height();
    };
    while (!fits() && font.pointSizeF() > smallest)
        font.setPointSizeF(std::max(smallest, font.pointSizeF() - 0.5));
    return font;
}

QString fit_text(QWidget& widget, const QString& text, const QSize& room, double scale)
{
    const QFont base = QApplication::font(&widget);
    const QFont font = fitted_font(resized(base, base.pointSizeF() * scale), text, room);
    if (widget.font() != font)
        widget.setFont(font);
    return QFontMetrics(font).elidedText(
        text, Qt::ElideRight, std::max(room.width(), 0), Qt::TextShowMnemonic);
}

} // namespace tessavox
