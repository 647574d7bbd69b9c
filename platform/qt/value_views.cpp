// Controls in which the user sets a value: lists, scroll bars, text fields, tabs, the text pane.
#include "platform/controls/bars.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/rich_text_box.h"
#include "platform/controls/scroll_bar.h"
#include "platform/controls/text_box.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/fitted_text.h"
#include "platform/qt/rich_text_pane.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/view_makers.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QProxyStyle>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOption>
#include <QStylePainter>
#include <QTabBar>

namespace tessavox {
namespace {

constexpr int visible_list_entries = 20;
constexpr int list_text_margin = 4; // pixels

/// Gives lists a popup of limited height with a scroll bar, where some styles would cover the whole
/// screen as if it were a menu.
class ScrollingListStyle : public QProxyStyle {
public:
    /// One for all lists.
    static QStyle& shared()
    {
        constexpr char name[] = "scrollingLists";
        if (auto* known = qApp->findChild<QProxyStyle*>(name))
            return *known;
        auto& style = make_child<ScrollingListStyle>();
        style.setObjectName(name);
        style.setParent(qApp);
        return style;
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
        QStyleHintReturn* result) const override
    {
        if (hint == SH_ComboBox_Popup)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
};

/// A list whose popup is as wide as its longest entry needs, whatever the width of the box. What is
/// typed finds the entry that begins with it, or else one that contains it; blanks too may be part
/// of a name.
class WideComboBox : public QComboBox {
public:
    explicit WideComboBox(QWidget* parent)
        : QComboBox(parent)
    {
        setStyle(&ScrollingListStyle::shared());
    }

    void showPopup() override
    {
        QAbstractItemView& list = *view();
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
        const int wanted = list.sizeHintForColumn(0) + 2 * list.frameWidth() + bar;
        list.setMinimumWidth(std::min(std::max(wanted, width()), screen()->size().width()));
        list.setTextElideMode(Qt::ElideRight);
        QComboBox::showPopup();
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (isEditable())
            return QComboBox::paintEvent(event);
        QStyleOptionComboBox option;
        initStyleOption(&option);
        const QSize field
            = style()
                  ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this)
                  .size();
        const QSize room(field.width() - list_text_margin, field.height());
        QStylePainter painter(this);
        painter.setFont(fitted_font(font(), option.currentText, room));
        option.currentText
            = painter.fontMetrics().elidedText(option.currentText, Qt::ElideRight, room.width());
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        const bool goes_on = m_since_key.isValid()
            && !m_since_key.hasExpired(QApplication::keyboardInputInterval());
        if (!goes_on)
            m_typed.clear();
        const bool is_text = !isEditable() && !event->text().isEmpty()
            && event->text().front().isPrint()
            && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
            && (goes_on || event->key() != Qt::Key_Space);
        if (!is_text)
            return QComboBox::keyPressEvent(event);
        m_typed += event->text();
        m_since_key.start();
        int found = findText(m_typed, Qt::MatchStartsWith);
        if (found < 0)
            found = findText(m_typed, Qt::MatchContains);
        if (found < 0 || found == currentIndex())
            return;
        setCurrentIndex(found);
        emit activated(found);
    }

private:
    QString m_typed;
    QElapsedTimer m_since_key;
};

class ComboBoxView : public WidgetView {
public:
    ComboBoxView(ComboBox& control, QComboBox& box)
        : WidgetView(control, box)
        , m_control(control)
        , m_box(box)
    {
        box.setEditable(control.style() == ComboBoxStyle::editable);
        // The size is the layout's; measuring hundreds of entries for a hint would be in vain.
        box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box.setMinimumContentsLength(1);
        box.setMaxVisibleItems(visible_list_entries);
        box.setInsertPolicy(QComboBox::NoInsert);
        connect(&box, &QComboBox::activated, this,
            [this](int index) { user_did([&] { m_control.user_choose(index); }); });
        if (QLineEdit* line = box.lineEdit()) {
            connect(line, &QLineEdit::textEdited, this, [this](const QString& text) {
                user_did([&] { m_control.user_edit(from_qt(text)); });
            });
        }
    }

private:
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
        if (m_box.currentIndex() != m_control.ListIndex.get())
            m_box.setCurrentIndex(m_control.ListIndex);
        const QString text = to_qt(m_control.Text);
        if (QLineEdit* line = m_box.lineEdit(); line && line->text() != text)
            line->setText(text);
        // The box may be too narrow for its entry; the tool tip has room for it.
        const QString tip = to_qt(m_control.ToolTipText);
        m_box.setToolTip(tip.isEmpty() ? text : text.isEmpty() ? tip : tip + "\n" + text);
    }

    ComboBox& m_control;
    QComboBox& m_box;
    unsigned m_entries_version = 0;
};

/// A scroll bar that the keyboard can reach, and that shows when it has.
class FocusScrollBar : public QScrollBar {
public:
    explicit FocusScrollBar(QWidget* parent)
        : QScrollBar(Qt::Horizontal, parent)
    {
        setFocusPolicy(Qt::StrongFocus);
        setContextMenuPolicy(Qt::NoContextMenu);
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QScrollBar::paintEvent(event);
        if (!hasFocus())
            return;
        QStylePainter painter(this);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
};

class ScrollBarView : public WidgetView {
public:
    ScrollBarView(ScrollBar& control, QScrollBar& bar)
        : WidgetView(control, bar)
        , m_control(control)
        , m_bar(bar)
    {
        const ScrollBarRange& range = control.range();
        bar.setRange(range.Min, range.Max);
        bar.setSingleStep(range.SmallChange);
        bar.setPageStep(range.LargeChange);
        // Values set by code come with signals blocked, so these two are the user's; the second one
        // covers arrows, shaft, keys and wheel, and assistive technologies, which set the value.
        connect(&bar, &QScrollBar::sliderMoved, this,
            [this](int value) { user_did([&] { m_control.user_drag(value); }); });
        connect(&bar, &QScrollBar::valueChanged, this, [this](int value) {
            if (!m_bar.isSliderDown())
                user_did([&] { m_control.user_step(value); });
        });
    }

private:
    void redraw() override { m_bar.setValue(m_control.Value); }

    ScrollBar& m_control;
    QScrollBar& m_bar;
};

class TextBoxView : public WidgetView {
public:
    TextBoxView(TextBox& control, QLineEdit& line)
        : WidgetView(control, line)
        , m_control(control)
        , m_line(line)
    {
        connect(&line, &QLineEdit::textEdited, this,
            [this](const QString& text) { user_did([&] { m_control.user_edit(from_qt(text)); }); });
    }

private:
    void redraw() override
    {
        const QString text = to_qt(m_control.Text);
        if (m_line.text() != text)
            m_line.setText(text);
    }

    TextBox& m_control;
    QLineEdit& m_line;
};

/// The heads of the tabs, as high as the strip shows of them.
class LowTabBar : public QTabBar {
public:
    explicit LowTabBar(QWidget* parent)
        : QTabBar(parent)
    {
        setShape(RoundedSouth);
        setExpanding(false);
        setDrawBase(false);
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    QSize tabSizeHint(int index) const override
    {
        const QSize natural = QTabBar::tabSizeHint(index);
        return { natural.width(), height() };
    }
};

/// The panes cover the strip but for its lower edge, where the heads of the tabs are.
class TabStripArea : public QWidget {
public:
    static constexpr int heads_height = 20; // pixels: the 300 twips that the layouts leave

    explicit TabStripArea(QWidget* parent)
        : QWidget(parent)
        , heads(make_child<LowTabBar>(this))
    {
        setFocusProxy(&heads);
    }
    LowTabBar& heads;

protected:
    void resizeEvent(QResizeEvent*) override
    {
        heads.setGeometry(0, height() - heads_height, width(), heads_height);
    }
};

class TabStripView : public WidgetView {
public:
    TabStripView(TabStrip& control, TabStripArea& area)
        : WidgetView(control, area)
        , m_control(control)
        , m_area(area)
    {
        for (const BarMember& tab : control.Tabs())
            area.heads.addTab(to_qt(tab.Caption));
        area.heads.setObjectName(to_qt(control.name()) + "Heads");
        fit_text(area.heads, "Text", { 200, TabStripArea::heads_height - 4 });
        connect(&area.heads, &QTabBar::currentChanged, this,
            [this](int index) { user_did([&] { m_control.user_select(index); }); });
    }
    QWidget& focus_widget() const override { return m_area.heads; }

private:
    void redraw() override
    {
        const QSignalBlocker quiet(m_area.heads);
        int index = 0;
        for (const BarMember& tab : m_control.Tabs()) {
            m_area.heads.setTabText(index, to_qt(tab.Caption));
            m_area.heads.setTabToolTip(index++, to_qt(tab.ToolTipText));
        }
        m_area.heads.setCurrentIndex(m_control.SelectedItem);
        m_area.lower(); // what lies at the same place covers it
    }

    TabStrip& m_control;
    TabStripArea& m_area;
};

class RichTextBoxView : public WidgetView {
public:
    RichTextBoxView(RichTextBox& control, QWidget& pane)
        : WidgetView(control, pane)
        , m_pane(&pane)
    {
    }

    void detach() override
    {
        if (attached() && m_pane)
            m_pane->setParent(nullptr); // it belongs to the pane, which goes with its form
        WidgetView::detach();
    }

private:
    QPointer<QWidget> m_pane;
};

} // namespace

std::unique_ptr<WidgetView> view_combo_box(ComboBox& box, QWidget& parent)
{
    return std::make_unique<ComboBoxView>(box, make_child<WideComboBox>(&parent));
}

std::unique_ptr<WidgetView> view_scroll_bar(ScrollBar& bar, QWidget& parent)
{
    return std::make_unique<ScrollBarView>(bar, make_child<FocusScrollBar>(&parent));
}

std::unique_ptr<WidgetView> view_text_box(TextBox& box, QWidget& parent)
{
    return std::make_unique<TextBoxView>(box, make_child<QLineEdit>(&parent));
}

std::unique_ptr<WidgetView> view_tab_strip(TabStrip& strip, QWidget& parent)
{
    return std::make_unique<TabStripView>(strip, make_child<TabStripArea>(&parent));
}

std::unique_ptr<WidgetView> view_rich_text_box(RichTextBox& box, QWidget& parent)
{
    auto* pane = dynamic_cast<QtRichTextPane*>(&box.pane());
    QWidget& widget = pane ? pane->widget() : make_child<QWidget>(&parent);
    widget.setParent(&parent);
    return std::make_unique<RichTextBoxView>(box, widget);
}

} // namespace tessavox
