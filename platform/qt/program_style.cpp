#include "platform/qt/program_style.h"

#include "platform/qt/colours.h"
#include "platform/qt/title_bar.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QStyleOption>

#include <algorithm>

namespace tessavox {
namespace {

constexpr double contrast_of_lines = 3; // by the guidelines' section 1.4.11
constexpr double share_of_disabled_text = 0.5;
constexpr double share_of_text_when_pointed_at = 0.08;
constexpr double share_of_text_when_pressed = 0.16;
constexpr double step = 0.05;

struct TextRole {
    QPalette::ColorRole text;
    QPalette::ColorRole ground;
};

constexpr TextRole text_roles[] = {
    { QPalette::WindowText, QPalette::Window },
    { QPalette::ButtonText, QPalette::Button },
    { QPalette::Text, QPalette::Base },
};

/// Draws the eye less than the text does, and can still be told from what is around it.
QColor line_colour(const QPalette& palette)
{
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    QColor line = text;
    for (double share = 1; share > 0; share -= step) {
        const QColor fainter = mixed(text, window, share);
        for (const auto ground : { QPalette::Window, QPalette::Base, QPalette::Button }) {
            if (contrast(fainter, palette.color(QPalette::Active, ground)) < contrast_of_lines)
                return line;
        }
        line = fainter;
    }
    return line;
}

struct Selection {
    QColor ground;
    QColor text;
};

/// The desktop's own selection, or the one nearest to it that can be read and, as a ring around
/// what has the focus, be seen.
Selection legible_selection(const QPalette& palette)
{
    const auto active
        = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
    constexpr double largest_share = 0.5; // of the text's colour
    const Selection own{ active(QPalette::Highlight), active(QPalette::HighlightedText) };
    for (const QColor& text : { own.text, active(QPalette::Base), active(QPalette::Text) }) {
        for (double share = 0; share <= largest_share; share += step) {
            const QColor ground = mixed(active(QPalette::WindowText), own.ground, share);
            if (contrast(ground, active(QPalette::Window)) >= contrast_of_lines
                && contrast(text, ground) >= contrast_of_text)
                return { ground, text };
        }
    }
    return own;
}

bool is_window_button(QStyle::StandardPixmap sign)
{
    return sign == QStyle::SP_TitleBarMinButton || sign == QStyle::SP_TitleBarMaxButton
        || sign == QStyle::SP_TitleBarNormalButton || sign == QStyle::SP_TitleBarCloseButton;
}

/// The shape of the icon, in one colour.
QIcon coloured(const QIcon& icon, const QColor& colour)
{
    QIcon result;
    for (const int side : { 10, 16, 32 }) {
        QPixmap shape = icon.pixmap(side, side);
        QPainter painter(&shape);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(shape.rect(), colour);
        painter.end();
        result.addPixmap(shape);
    }
    return result;
}

struct ArrowRow {
    QStyle::PrimitiveElement element;
    QPointF ends[3]; // in a square from -1 to 1
};

constexpr ArrowRow arrows[] = {
    { QStyle::PE_IndicatorArrowDown, { { -1, -0.5 }, { 0, 0.5 }, { 1, -0.5 } } },
    { QStyle::PE_IndicatorArrowUp, { { -1, 0.5 }, { 0, -0.5 }, { 1, 0.5 } } },
    { QStyle::PE_IndicatorArrowLeft, { { 0.5, -1 }, { -0.5, 0 }, { 0.5, 1 } } },
    { QStyle::PE_IndicatorArrowRight, { { -0.5, -1 }, { 0.5, 0 }, { -0.5, 1 } } },
};

void draw_arrow(const ArrowRow& row, const QStyleOption& option, QPainter& painter)
{
    constexpr double reach = 4;
    constexpr double thickness = 1.5;
    const QPointF middle = QRectF(option.rect).center();
    const double room = std::min(option.rect.width(), option.rect.height()) / 2.0;
    QPointF ends[3];
    for (int i = 0; i < 3; ++i)
        ends[i] = middle + row.ends[i] * std::min(reach, room);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(option.palette.color(QPalette::ButtonText), thickness, Qt::SolidLine,
        Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(ends, 3);
    painter.restore();
}

void draw_focus_ring(const QStyleOption& option, QPainter& painter)
{
    constexpr double radius = 3;
    constexpr double thickness = 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(option.palette.color(QPalette::Highlight), thickness));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), radius, radius);
    painter.restore();
}

/// Buttons and fields of the toolkit's own dialogs have an edge that is darker than the window, and
/// so none in high contrast.
void draw_edge(const QStyleOption& option, QPainter& painter)
{
    constexpr double radius = 2;
    if (option.state.testFlag(QStyle::State_HasFocus))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(option.palette.color(QPalette::Mid));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

void draw_check_box(const QStyleOption& option, QPainter& painter)
{
    constexpr double radius = 3;
    constexpr double thickness = 1.8;
    const QRectF box = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    const QPalette& palette = option.palette;
    const bool sunken = option.state.testFlag(QStyle::State_Sunken);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette.color(QPalette::Mid));
    painter.setBrush(palette.color(sunken ? QPalette::Midlight : QPalette::Base));
    painter.drawRoundedRect(box, radius, radius);
    painter.setPen(
        QPen(palette.color(QPalette::Text), thickness, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto at = [&](double x, double y) { return box.topLeft() + QPointF(x, y) * box.width(); };
    if (option.state.testFlag(QStyle::State_On))
        painter.drawPolyline(QPolygonF({ at(0.22, 0.52), at(0.43, 0.74), at(0.8, 0.28) }));
    else if (option.state.testFlag(QStyle::State_NoChange))
        painter.drawLine(at(0.25, 0.5), at(0.75, 0.5));
    painter.restore();
}

void draw_frame(const QRect& all, const QColor& line, QPainter& painter)
{
    for (const QRect& side : { QRect(all.left(), all.top(), all.width(), 1),
             QRect(all.left(), all.bottom(), all.width(), 1),
             QRect(all.left(), all.top(), 1, all.height()),
             QRect(all.right(), all.top(), 1, all.height()) })
        painter.fillRect(side, line);
}

} // namespace

void ProgramStyle::polish(QPalette& palette)
{
    QProxyStyle::polish(palette);
    for (const TextRole& role : text_roles)
        palette.setColor(QPalette::Disabled, role.text,
            mixed(palette.color(QPalette::Active, role.text),
                palette.color(QPalette::Active, role.ground), share_of_disabled_text));
    const QColor text = palette.color(QPalette::Active, QPalette::ButtonText);
    const QColor button = palette.color(QPalette::Active, QPalette::Button);
    palette.setColor(QPalette::Mid, line_colour(palette));
    palette.setColor(QPalette::Midlight, mixed(text, button, share_of_text_when_pointed_at));
    palette.setColor(QPalette::Dark, mixed(text, button, share_of_text_when_pressed));
    const Selection selection = legible_selection(palette);
    for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive }) {
        palette.setColor(group, QPalette::Highlight, selection.ground);
        palette.setColor(group, QPalette::HighlightedText, selection.text);
    }
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
    QPainter* painter, const QWidget* widget) const
{
    if (element == PE_Frame)
        return draw_frame(option->rect, option->palette.color(QPalette::Mid), *painter);
    if (element == PE_FrameFocusRect)
        return draw_focus_ring(*option, *painter);
    if (element == PE_IndicatorCheckBox)
        return draw_check_box(*option, *painter);
    for (const ArrowRow& row : arrows) {
        if (row.element == element)
            return draw_arrow(row, *option, *painter);
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_FrameWindow)
        draw_frame(option->rect, option->palette.color(QPalette::Mid), *painter);
    if (element == PE_PanelButtonCommand || element == PE_FrameLineEdit)
        draw_edge(*option, *painter);
}

void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
    QPainter* painter, const QWidget* widget) const
{
    const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
    if (control == CC_TitleBar && bar)
        return draw_title_bar(*bar, *painter, *proxy(), widget);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox || control == CC_SpinBox)
        draw_edge(*option, *painter);
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
    QStyleHintReturn* result) const
{
    const bool refused = hint == SH_ComboBox_Popup || hint == SH_DialogButtonBox_ButtonsHaveIcons
        || hint == SH_BlinkCursorWhenTextSelected;
    return refused ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
}

QIcon ProgramStyle::standardIcon(
    StandardPixmap sign, const QStyleOption* option, const QWidget* widget) const
{
    const QIcon icon = QProxyStyle::standardIcon(sign, option, widget);
    const QPalette& palette = option ? option->palette : QApplication::palette();
    return is_window_button(sign) ? coloured(icon, palette.color(QPalette::ButtonText)) : icon;
}

} // namespace tessavox
