#include "platform/qt/title_bar.h"

#include "platform/qt/colours.h"

#include <QPainter>
#include <QPalette>
#include <QStyleOption>

namespace tessavox {
namespace {

constexpr double share_of_text_when_pointed_at = 0.16;
constexpr double share_of_text_when_pressed = 0.32;

bool is_shown(QStyle::SubControl button, const QStyleOptionTitleBar& option)
{
    const bool minimised = option.titleBarState & Qt::WindowMinimized;
    const bool maximised = option.titleBarState & Qt::WindowMaximized;
    const bool can_minimise = option.titleBarFlags & Qt::WindowMinimizeButtonHint;
    const bool can_maximise = option.titleBarFlags & Qt::WindowMaximizeButtonHint;
    switch (button) {
    case QStyle::SC_TitleBarMinButton:
        return can_minimise && !minimised;
    case QStyle::SC_TitleBarMaxButton:
        return can_maximise && !maximised;
    case QStyle::SC_TitleBarNormalButton:
        return (can_minimise && minimised) || (can_maximise && maximised);
    default:
        return option.titleBarFlags & Qt::WindowSystemMenuHint;
    }
}

/// Lines in a square of 8 pixels.
void draw_sign(QStyle::SubControl button, const QRect& place, QPainter& painter)
{
    QRectF square(0, 0, 8, 8);
    square.moveCenter(QRectF(place).center());
    if (button == QStyle::SC_TitleBarMinButton) {
        painter.drawLine(square.bottomLeft(), square.bottomRight());
    } else if (button == QStyle::SC_TitleBarMaxButton) {
        painter.drawRect(square);
    } else if (button == QStyle::SC_TitleBarNormalButton) {
        painter.drawRect(square.adjusted(0, 2, -2, 0));
        painter.drawPolyline(QPolygonF({ square.topLeft() + QPointF(2, 0), square.topRight(),
            square.bottomRight() - QPointF(0, 2) }));
    } else {
        painter.drawLine(square.topLeft(), square.bottomRight());
        painter.drawLine(square.topRight(), square.bottomLeft());
    }
}

} // namespace

void draw_title_bar(const QStyleOptionTitleBar& option, QPainter& painter, const QStyle& style,
    const QWidget* widget)
{
    constexpr double thickness = 1.5;
    constexpr double radius = 3;
    constexpr int sign_side = 16;
    const bool active = option.titleBarState & Qt::WindowActive;
    const auto colour
        = [&](QPalette::ColorRole role) { return option.palette.color(QPalette::Active, role); };
    const QColor ground = colour(active ? QPalette::Highlight : QPalette::Window);
    const QColor ink = colour(active ? QPalette::HighlightedText : QPalette::WindowText);
    const auto place_of = [&](QStyle::SubControl part) {
        return style.subControlRect(QStyle::CC_TitleBar, &option, part, widget);
    };
    painter.save();
    painter.fillRect(option.rect, ground);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto button : { QStyle::SC_TitleBarMinButton, QStyle::SC_TitleBarMaxButton,
             QStyle::SC_TitleBarNormalButton, QStyle::SC_TitleBarCloseButton }) {
        if (!is_shown(button, option))
            continue;
        const QRect place = place_of(button);
        const bool pointed_at = option.activeSubControls == button;
        const bool pressed = pointed_at && option.state.testFlag(QStyle::State_Sunken);
        if (pointed_at) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(mixed(
                ink, ground, pressed ? share_of_text_when_pressed : share_of_text_when_pointed_at));
            painter.drawRoundedRect(place, radius, radius);
        }
        painter.setPen(QPen(ink, thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        draw_sign(button, place, painter);
    }
    QRect sign({}, QSize(sign_side, sign_side));
    sign.moveCenter(place_of(QStyle::SC_TitleBarSysMenu).center());
    option.icon.paint(&painter, sign);
    const QRect place = place_of(QStyle::SC_TitleBarLabel);
    painter.setPen(ink);
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine,
        painter.fontMetrics().elidedText(option.text, Qt::ElideRight, place.width()));
    painter.restore();
}

} // namespace tessavox
