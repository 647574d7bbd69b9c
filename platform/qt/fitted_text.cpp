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

QString fit_text(QWidget& widget, const QString& text, const QSize& room, double scale)
{
    const QFont base = QApplication::font(&widget);
    const double smallest = std::min(smallest_legible_points, base.pointSizeF());
    QFont font = resized(base, base.pointSizeF() * scale);
    const auto fits = [&] {
        const QSize size = QFontMetrics(font).size(Qt::TextShowMnemonic, text);
        return size.width() <= room.width() && size.height() <= room.height();
    };
    while (!fits() && font.pointSizeF() > smallest)
        font.setPointSizeF(std::max(smallest, font.pointSizeF() - 0.5));
    if (widget.font() != font)
        widget.setFont(font);
    return QFontMetrics(font).elidedText(
        text, Qt::ElideRight, std::max(room.width(), 0), Qt::TextShowMnemonic);
}

} // namespace tessavox
