// Buttons, check boxes and the plain kinds beside them.
#include "platform/controls/buttons.h"
#include "platform/controls/containers.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/fitted_text.h"
#include "platform/qt/program_icons.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/view_makers.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QStyle>
#include <QStyleOption>
#include <QStylePainter>

namespace tessavox {
namespace {

/// From this height (pixels) on a button is one of the big ones: larger text, and a sign.
constexpr int big_button_height = 40;
constexpr double big_button_text_scale = 1.3;
constexpr int sign_side = 24;
constexpr int small_sign_side = 16;
constexpr int text_margin = 6; // beside a sign
constexpr int edge_and_margin = 2; // of a button, on each side of its text
constexpr int label_indent = 2;
constexpr int gap_before_box = 4;
constexpr int smallest_gap = 2;

QString shown_caption(const Control& control)
{
    return to_qt(control.Caption).trimmed();
}

/// A button whose sign and caption stand together in its middle. From right to left Qt would put
/// the caption at the edge.
class SignButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (icon().isNull() || isLeftToRight())
            return QPushButton::paintEvent(event);
        QStyleOptionButton option;
        initStyleOption(&option);
        QStylePainter painter(this);
        painter.drawControl(QStyle::CE_PushButtonBevel, option);
        const int text = painter.fontMetrics().size(Qt::TextShowMnemonic, option.text).width();
        const int beside_text = iconSize().width() + (text > 0 ? text_margin : 0);
        QRect place({}, QSize(text + beside_text, height()));
        place.moveCenter(rect().center());
        const auto mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;
        QRect sign({}, iconSize());
        sign.moveCenter(place.center());
        sign.moveRight(place.right());
        icon().paint(&painter, sign, Qt::AlignCenter, mode);
        painter.drawItemText(place.adjusted(0, 0, -beside_text, 0),
            Qt::AlignCenter | Qt::TextShowMnemonic, palette(), isEnabled(), option.text,
            QPalette::ButtonText);
    }
};

class PressView : public WidgetView {
public:
    PressView(Control& control, QAbstractButton& button, const Handler& press)
        : WidgetView(control, button)
    {
        // A press by an assistive technology takes a moment, at whose end the work that refuses it
        // may be over.
        connect(&button, &QAbstractButton::pressed, this, [this] {
            m_counts = user_may_act();
            m_is_pressed = true;
        });
        connect(&button, &QAbstractButton::released, this, [this] { m_is_pressed = false; });
        const auto act = [this, press] {
            user_did([&] {
                if (m_counts)
                    press();
            });
        };
        connect(&button, &QAbstractButton::clicked, this, act);
        // It may also tick a box without any press.
        connect(&button, &QAbstractButton::toggled, this, [this, act] {
            if (m_is_pressed)
                return;
            m_counts = user_may_act();
            act();
        });
    }

private:
    bool m_counts = true;
    bool m_is_pressed = false;
};

class CommandButtonView : public PressView {
public:
    CommandButtonView(CommandButton& control, QPushButton& button)
        : PressView(control, button, [&control] { control.user_press(); })
        , m_control(control)
        , m_button(button)
    {
        button.setAutoDefault(true); // so that Return presses it, as the blank does
        button.setFocusPolicy(Qt::StrongFocus);
    }

private:
    void redraw() override
    {
        int room = m_button.width() - 2 * edge_and_margin;
        const bool big = m_button.height() >= big_button_height;
        QFont font = QApplication::font(&m_button);
        font.setPointSizeF(font.pointSizeF() * (big ? big_button_text_scale : 1));
        show_sign(big);
        QString text = shown_caption(m_control);
        const bool has_sign = !m_button.icon().isNull();
        if (has_sign && big)
            room -= m_button.iconSize().width() + text_margin;
        else if (has_sign)
            text.clear(); // not every text has room, and the row is to be of one kind
        m_button.setText(fit_text(m_button, font, text, room));
    }

    void show_sign(bool big)
    {
        const bool in_dock_bar = m_control.form().kind() == FormKind::tool_window;
        if (!big && !in_dock_bar)
            return;
        const int side = big ? sign_side : small_sign_side;
        m_button.setIconSize({ side, side });
        const auto sign_of = big ? icon_of_big_button : icon_of_dock_button;
        m_button.setIcon(sign_of(m_control.name(), m_button.palette()));
    }

    QString tip() const override
    {
        return tip_for(shown_caption(m_control), m_button.text(), WidgetView::tip());
    }

    /// A button often disables itself by what it does. Whoever presses it by the keyboard then
    /// finds the focus on the button in its place, or on the first one beside it that can be
    /// pressed, and not in the text, where the next key would overwrite the word that is being
    /// read. Until then nothing has it, so that it doesn't hop over all that is about to be
    /// disabled.
    void about_to_lose_focus() override
    {
        m_button.clearFocus();
        QMetaObject::invokeMethod(
            &m_button,
            [&button = m_button] {
                if (QPushButton* other = successor(button))
                    other->setFocus();
            },
            Qt::QueuedConnection); // once the state of all buttons is settled
    }

    static QPushButton* successor(const QPushButton& button)
    {
        QPushButton* first = nullptr;
        for (QObject* child : button.parentWidget()->children()) {
            auto* other = qobject_cast<QPushButton*>(child);
            if (!other || other->isHidden() || !other->isEnabled())
                continue;
            if (other == &button || other->geometry() == button.geometry())
                return other;
            if (!first)
                first = other;
        }
        return first;
    }

    CommandButton& m_control;
    QPushButton& m_button;
};

class CheckBoxView : public PressView {
public:
    CheckBoxView(CheckBox& control, QCheckBox& box)
        : PressView(control, box, [&control] { control.user_toggle(); })
        , m_control(control)
        , m_box(box)
    {
    }

private:
    void redraw() override
    {
        const QStyle& style = *QApplication::style(); // a style sheet would remember each box
        const int sign = style.pixelMetric(QStyle::PM_IndicatorWidth)
            + style.pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
        m_box.setText(fit_text(
            m_box, QApplication::font(&m_box), shown_caption(m_control), m_box.width() - sign));
        m_box.setTristate(m_control.Value == 2);
        m_box.setCheckState(m_control.Value == 2 ? Qt::PartiallyChecked
                : m_control.Value == 1           ? Qt::Checked
                                                 : Qt::Unchecked);
    }

    QString tip() const override
    {
        return tip_for(shown_caption(m_control), m_box.text(), WidgetView::tip());
    }

    CheckBox& m_control;
    QCheckBox& m_box;
};

class LabelView : public WidgetView {
public:
    LabelView(Label& control, QLabel& label)
        : WidgetView(control, label)
        , m_control(control)
        , m_label(label)
    {
        label.setIndent(label_indent);
    }

private:
    void redraw() override
    {
        // A list is as high as its font asks; with the same middle both have the same baseline.
        if (const QWidget* box = m_label.buddy(); box && box->y() == m_label.y())
            m_label.resize(m_label.width(), std::max(m_label.height(), box->height()));
        const QString caption = shown_caption(m_control);
        const QFont font = QApplication::font(&m_label);
        int room = m_label.width() - label_indent - (m_label.buddy() ? gap_before_box : 0);
        if (m_label.buddy() && QFontMetrics(font).horizontalAdvance(caption) > room)
            room += gap_before_box - smallest_gap;
        m_label.setText(fit_text(m_label, font, caption, room));
    }

    QString tip() const override
    {
        return tip_for(shown_caption(m_control), m_label.text(), WidgetView::tip());
    }

    Label& m_control;
    QLabel& m_label;
};

/// An edge groups what has a name in common; without one there is nothing to see.
class NamedGroup : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (!title().isEmpty())
            QGroupBox::paintEvent(event);
    }
};

class FrameView : public WidgetView {
public:
    FrameView(Frame& control, QGroupBox& box)
        : WidgetView(control, box)
        , m_control(control)
        , m_box(box)
    {
    }

private:
    void redraw() override { m_box.setTitle(shown_caption(m_control)); }

    Frame& m_control;
    QGroupBox& m_box;
};

} // namespace

std::unique_ptr<WidgetView> view_command_button(CommandButton& button, QWidget& parent)
{
    return std::make_unique<CommandButtonView>(button, make_child<SignButton>(&parent));
}

std::unique_ptr<WidgetView> view_check_box(CheckBox& box, QWidget& parent)
{
    return std::make_unique<CheckBoxView>(box, make_child<QCheckBox>(&parent));
}

std::unique_ptr<WidgetView> view_label(Label& label, QWidget& parent)
{
    return std::make_unique<LabelView>(label, make_child<QLabel>(&parent));
}

std::unique_ptr<WidgetView> view_frame(Frame& frame, QWidget& parent)
{
    return std::make_unique<FrameView>(frame, make_child<NamedGroup>(&parent));
}

} // namespace tessavox
