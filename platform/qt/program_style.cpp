#include "platform/qt/program_style.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QStyleOption>

#include <cmath>

namespace tessavox {
namespace {

// Three to one against the window in light colours and dark ones.
constexpr double share_of_disabled_text = 0.5;
constexpr double share_of_text_in_a_line = 0.45;

struct TextRole {
    QPalette::ColorRole text;
    QPalette::ColorRole ground;
};

constexpr TextRole text_roles[] = {
    { QPalette::WindowText, QPalette::Window },
    { QPalette::ButtonText, QPalette::Button },
    { QPalette::Text, QPalette::Base },
};

QColor mixed(const QColor& one, const QColor& other, double share)
{
    const auto mix = [share](int a, int b) {
        return static_cast<int>(std::lround(a * share + b * (1 - share)));
    };
    return { mix(one.red(), other.red()), mix(one.green(), other.green()),
        mix(one.blue(), other.blue()) };
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

} // namespace

void ProgramStyle::polish(QPalette& palette)
{
    QProxyStyle::polish(palette);
    for (const TextRole& role : text_roles)
        palette.setColor(QPalette::Disabled, role.text,
            mixed(palette.color(QPalette::Active, role.text),
                palette.color(QPalette::Active, role.ground), share_of_disabled_text));
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
    QPainter* painter, const QWidget* widget) const
{
    if (element != PE_Frame)
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    const QColor line = mixed(option->palette.color(QPalette::WindowText),
        option->palette.color(QPalette::Window), share_of_text_in_a_line);
    const QRect& all = option->rect;
    for (const QRect& side : { QRect(all.left(), all.top(), all.width(), 1),
             QRect(all.left(), all.bottom(), all.width(), 1),
             QRect(all.left(), all.top(), 1, all.height()),
             QRect(all.right(), all.top(), 1, all.height()) })
        painter->fillRect(side, line);
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
    QStyleHintReturn* result) const
{
    return hint == SH_ComboBox_Popup ? 0 : QProxyStyle::styleHint(hint, option, widget, result);
}

QIcon ProgramStyle::standardIcon(
    StandardPixmap sign, const QStyleOption* option, const QWidget* widget) const
{
    const QIcon icon = QProxyStyle::standardIcon(sign, option, widget);
    const QPalette& palette = option ? option->palette : QApplication::palette();
    return is_window_button(sign) ? coloured(icon, palette.color(QPalette::ButtonText)) : icon;
}

} // namespace tessavox
