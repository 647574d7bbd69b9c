// Controls in which the user sets a value: scroll bars, text fields, tabs, the text pane.
#include "platform/controls/bars.h"
#include "platform/controls/rich_text_box.h"
#include "platform/controls/scroll_bar.h"
#include "platform/controls/text_box.h"
#include "platform/controls/web_browser.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/rich_text_pane.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/view_makers.h"
#include "platform/qt/web_pane.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QStyleOption>
#include <QStylePainter>
#include <QTabBar>

#include <functional>
#include <utility>

namespace tessavox {
namespace {

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
    /// Qt takes a bar for that of a page, which a key to the right moves to the left.
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right)
            return QScrollBar::keyPressEvent(event);
        const bool towards_the_end = (event->key() == Qt::Key_Right) == isLeftToRight();
        triggerAction(towards_the_end ? SliderSingleStepAdd : SliderSingleStepSub);
    }

    void paintEvent(QPaintEvent* event) override
    {
        QScrollBar::paintEvent(event);
        QStylePainter painter(this);
        if (style()->inherits("QStyleSheetStyle"))
            draw_arrows(painter);
        if (!hasFocus())
            return;
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }

private:
    /// Which a style sheet leaves out.
    void draw_arrows(QStylePainter& painter) const
    {
        QStyleOptionSlider option;
        initStyleOption(&option);
        const bool mirrored = !isLeftToRight();
        for (const auto end : { QStyle::SC_ScrollBarSubLine, QStyle::SC_ScrollBarAddLine }) {
            QStyleOption sign = option;
            sign.rect = style()->subControlRect(QStyle::CC_ScrollBar, &option, end, this);
            painter.drawPrimitive((end == QStyle::SC_ScrollBarSubLine) != mirrored
                    ? QStyle::PE_IndicatorArrowLeft
                    : QStyle::PE_IndicatorArrowRight,
                sign);
        }
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
    /// The user clicked on the tab that was in front already.
    std::function<void(int index)> clicked_in_front;

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        const int pressed = tabAt(event->position().toPoint());
        m_pressed_in_front = pressed == currentIndex() ? pressed : -1;
        QTabBar::mousePressEvent(event);
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        QTabBar::mouseReleaseEvent(event);
        const int released = tabAt(event->position().toPoint());
        if (event->button() == Qt::LeftButton && released >= 0
            && released == std::exchange(m_pressed_in_front, -1))
            clicked_in_front(released);
    }

    QSize tabSizeHint(int index) const override
    {
        const QSize natural = QTabBar::tabSizeHint(index);
        return { natural.width(), height() };
    }

private:
    int m_pressed_in_front = -1;
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
        const auto select = [this](int index) { user_did([&] { m_control.user_select(index); }); };
        connect(&area.heads, &QTabBar::currentChanged, this, select);
        area.heads.clicked_in_front = select;
    }
    QWidget& focus_widget() const override { return m_area.heads; }

    void detach() override
    {
        m_area.heads.clicked_in_front = [](int) {};
        WidgetView::detach();
    }

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

/// Of a pane whose widget belongs to itself.
class PaneView : public WidgetView {
public:
    PaneView(Control& control, QWidget& pane)
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

protected:
    /// None over a text that is read; screen readers say it.
    QString tip() const override { return {}; }

private:
    QPointer<QWidget> m_pane;
};

} // namespace

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
    return std::make_unique<PaneView>(box, widget);
}

std::unique_ptr<WidgetView> view_web_browser(WebBrowser& browser, QWidget& parent)
{
    auto* pane = dynamic_cast<QtWebPane*>(&browser.pane());
    QWidget& widget = pane ? pane->widget() : make_child<QWidget>(&parent);
    widget.setParent(&parent);
    return std::make_unique<PaneView>(browser, widget);
}

} // namespace tessavox
