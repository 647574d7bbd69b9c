// Lists of texts of which the user chooses one.
#include "platform/controls/combo_box.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/fitted_text.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/view_makers.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QStyleOption>
#include <QStylePainter>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace tessavox {
namespace {

constexpr int visible_list_entries = 20;
constexpr int list_text_margin = 5; // pixels from the edge
constexpr int text_padding = 2; // of its height, as the toolkit has it
constexpr int key_intervals_of_a_pause = 2;

/// A list whose popup is as wide as its longest entry needs, whatever the width of the box. What is
/// typed finds the entry that begins with it, or else one that contains it; blanks too may be part
/// of a name. Letters only show what they find: the entry is chosen when the word is complete,
/// after a short pause, by Return or by leaving the list. Escape takes the search back.
class WideComboBox : public QComboBox {
public:
    explicit WideComboBox(QWidget* parent)
        : QComboBox(parent)
    {
        m_pause.setSingleShot(true);
        connect(&m_pause, &QTimer::timeout, this, &WideComboBox::choose_found);
    }

    /// A key on its way to the text; true keeps it from there.
    std::function<bool(const QKeyEvent&)> pressed_in_text;

    /// Whether a word is being typed, and what is shown is what it finds.
    bool is_searching() const { return !m_typed.isEmpty(); }
    void forget_search()
    {
        m_pause.stop();
        m_typed.clear();
    }

    /// The width is the layout's: measuring hundreds of entries would be in vain, and to have it
    /// left out by the toolkit would make the list, which most boxes never open.
    QSize sizeHint() const override
    {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QSize text(fontMetrics().averageCharWidth(), fontMetrics().height() + text_padding);
        return style()->sizeFromContents(QStyle::CT_ComboBox, &option, text, this);
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

    void showPopup() override
    {
        choose_found();
        QAbstractItemView& list = *view();
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
        const int wanted = list.sizeHintForColumn(0) + 2 * list.frameWidth() + bar;
        list.setMinimumWidth(std::min(std::max(wanted, width()), screen()->size().width()));
        list.setTextElideMode(Qt::ElideRight);
        QComboBox::showPopup();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QRect arrow = QStyle::visualRect(layoutDirection(), rect(),
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, this));
        const QRect room(list_text_margin, 0, arrow.left() - list_text_margin + 1, height());
        QStylePainter painter(this);
        // The arrow is drawn here, as a style sheet would leave it out.
        option.subControls &= ~QStyle::SC_ComboBoxArrow;
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        QStyleOption sign = option;
        sign.rect = QStyle::visualRect(layoutDirection(), rect(), arrow);
        painter.drawPrimitive(QStyle::PE_IndicatorArrowDown, sign);
        if (isEditable())
            return;
        painter.setFont(fitted_font(font(), currentText(), room.width()));
        painter.drawItemText(QStyle::visualRect(layoutDirection(), rect(), room),
            static_cast<int>(
                QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignVCenter),
            option.palette, isEnabled(), fitted_text(painter.font(), currentText(), room.width()),
            QPalette::ButtonText);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        if (isEditable() && pressed_in_text && pressed_in_text(*event))
            return;
        if (is_part_of_a_word(*event))
            return search(event->text());
        const bool for_the_word = is_searching() && ends_a_word(event->key());
        if (is_searching() && event->key() == Qt::Key_Escape)
            setCurrentIndex(m_before);
        if (!is_modifier(event->key()))
            choose_found();
        if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)
            turn_page(event->key() == Qt::Key_PageDown);
        else if (!for_the_word)
            QComboBox::keyPressEvent(event);
    }

    void focusOutEvent(QFocusEvent* event) override
    {
        choose_found();
        QComboBox::focusOutEvent(event);
    }

private:
    bool is_part_of_a_word(const QKeyEvent& event) const
    {
        return !isEditable() && !event.text().isEmpty() && event.text().front().isPrint()
            && !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier))
            && (is_searching() || event.key() != Qt::Key_Space);
    }

    static bool ends_a_word(int key)
    {
        return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
    }

    static bool is_modifier(int key)
    {
        return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr;
    }

    void turn_page(bool down)
    {
        const int page = maxVisibleItems() - 1;
        const int wanted
            = std::max(0, std::min(currentIndex() + (down ? page : -page), count() - 1));
        if (count() == 0 || wanted == currentIndex())
            return;
        setCurrentIndex(wanted);
        emit activated(wanted);
    }

    void search(const QString& letters)
    {
        if (!is_searching())
            m_before = currentIndex();
        m_typed += letters;
        m_pause.start(key_intervals_of_a_pause * QApplication::keyboardInputInterval());
        int found = findText(m_typed, Qt::MatchStartsWith);
        if (found < 0)
            found = findText(m_typed, Qt::MatchContains);
        if (found >= 0)
            setCurrentIndex(found);
    }

    void choose_found()
    {
        const bool found_another = is_searching() && currentIndex() != m_before;
        forget_search();
        if (found_another)
            emit activated(currentIndex());
    }

    QString m_typed;
    int m_before = -1; // the entry that was chosen when the word began
    QTimer m_pause;
};

class ComboBoxView : public WidgetView {
public:
    ComboBoxView(ComboBox& control, WideComboBox& box)
        : WidgetView(control, box)
        , m_control(control)
        , m_box(box)
    {
        box.setEditable(control.style() == ComboBoxStyle::editable);
        box.setMaxVisibleItems(visible_list_entries);
        box.setInsertPolicy(QComboBox::NoInsert);
        connect(&box, &QComboBox::activated, this,
            [this](int index) { user_did([&] { m_control.user_choose(index); }); });
        if (QLineEdit* line = box.lineEdit()) {
            box.setCompleter(nullptr); // what is typed stays as it is
            // The box would choose an entry of that text when the text loses the focus.
            disconnect(line, &QLineEdit::editingFinished, &box, nullptr);
            box.pressed_in_text = [this](const QKeyEvent& key) { return pressed(key); };
            connect(line, &QLineEdit::textEdited, this, [this](const QString& text) {
                user_did([&] { m_control.user_edit(from_qt(text)); });
            });
        }
    }

private:
    static constexpr int enter_code = 13;
    static constexpr int last_letter = 0xFF; // keys that have no letter come after those

    bool pressed(const QKeyEvent& key)
    {
        const bool is_enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        const int code = is_enter ? enter_code : key.key() <= last_letter ? key.key() : 0;
        const Qt::KeyboardModifiers held = key.modifiers();
        const int shift = (held.testFlag(Qt::ShiftModifier) ? 1 : 0)
            + (held.testFlag(Qt::ControlModifier) ? 2 : 0)
            + (held.testFlag(Qt::AltModifier) ? 4 : 0);
        user_did([&] { m_control.user_presses_key(code, shift); });
        return is_enter && m_control.KeyDown; // it is done with then
    }

    void redraw() override
    {
        const int natural_height = m_box.sizeHint().height();
        if (m_box.height() < natural_height)
            m_box.resize(m_box.width(), natural_height);
        if (m_entries_version != m_control.entries_version()) {
            m_entries_version = m_control.entries_version();
            for (int i = m_box.count(); i < m_control.ListCount(); ++i)
                m_box.addItem(to_qt(m_control.List(i)));
        }
        if (m_shown_index != m_control.ListIndex.get())
            m_box.forget_search();
        m_shown_index = m_control.ListIndex;
        if (!m_box.is_searching() && m_box.currentIndex() != m_shown_index)
            m_box.setCurrentIndex(m_shown_index);
        const QString text = to_qt(m_control.Text);
        if (QLineEdit* line = m_box.lineEdit(); line && line->text() != text)
            line->setText(text);
    }

    // The box may be too narrow for its entry; the tool tip has room for it.
    QString tip() const override
    {
        const QString own = WidgetView::tip();
        const QString text = to_qt(m_control.Text);
        return own.isEmpty() ? text : text.isEmpty() ? own : own + "\n" + text;
    }

    ComboBox& m_control;
    WideComboBox& m_box;
    int m_shown_index = -1;
    unsigned m_entries_version = 0;
};

} // namespace

std::unique_ptr<WidgetView> view_combo_box(ComboBox& box, QWidget& parent)
{
    return std::make_unique<ComboBoxView>(box, make_child<WideComboBox>(&parent));
}

} // namespace tessavox
