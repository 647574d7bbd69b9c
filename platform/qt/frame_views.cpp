#include "platform/qt/frame_views.h"

#include "platform/controls/bars.h"
#include "platform/controls/form.h"
#include "platform/controls/menu_item.h"
#include "platform/failure.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/program_icons.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/twips.h"

#include <QAction>
#include <QDateTime>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QRegularExpression>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

#include <algorithm>
#include <utility>

namespace tessavox {
namespace {

/// A label that gives way: it shows what there is room for, and its tool tip the rest.
class ElidedLabel : public QLabel {
public:
    explicit ElidedLabel(QWidget* parent)
        : QLabel(parent)
    {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        setTextFormat(Qt::PlainText);
        setIndent(0);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        // A date in Latin letters keeps its order in a window that runs from right to left.
        painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
        painter.drawText(contentsRect(),
            static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)
                | Qt::AlignAbsolute | Qt::AlignVCenter),
            fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
    }
};

/// The system's short form of a time, less its seconds: the clock moves once a minute.
QString without_seconds(const QLocale& locale)
{
    static const QRegularExpression seconds("[^A-Za-z]?ss?");
    return locale.timeFormat(QLocale::ShortFormat).remove(seconds);
}

/// A button without a caption says what its tool tip does.
QString text_of(const BarMember& button)
{
    for (const std::string& text : { button.Caption.get(), button.ToolTipText.get() }) {
        if (!text.empty())
            return to_qt(text);
    }
    return to_qt(button.key());
}

} // namespace

// Menus ------------------------------------------------------------------------------------------

MenuViews::MenuViews(Form& form, const MessageGate& gate, QMainWindow& window)
    : m_form(form)
    , m_gate(gate)
{
    for (Control* control : form.controls()) {
        if (auto* item = dynamic_cast<MenuItem*>(control))
            add(*item, window);
    }
    control_changed();
}

void MenuViews::add(MenuItem& item, QMainWindow& window)
{
    const auto above = m_menu_of.find(item.container());
    QMenu* parent = above == m_menu_of.end() ? nullptr : above->second;
    Entry entry{ &item, nullptr, nullptr, {}, {} };
    if (has_items(item) || !item.container()) {
        entry.menu = parent ? parent->addMenu(QString()) : window.menuBar()->addMenu(QString());
        entry.menu->setObjectName(to_qt(item.name()));
        entry.action = entry.menu->menuAction();
        m_menu_of[&item] = entry.menu;
    } else if (parent) {
        entry.action = parent->addAction(icon_of_command(item.name(), IconPlace::menu), QString());
        connect(entry.action, &QAction::triggered, this, [this, &item, &window] {
            if (!m_entries.empty() && m_gate.lets_user_at(window))
                attempt([&] { item.user_choose(); });
        });
    } else {
        return;
    }
    entry.action->setObjectName(to_qt(item.name()));
    item.set_view(this);
    m_entries.push_back(entry);
}

bool MenuViews::has_items(const MenuItem& item) const
{
    const auto controls = m_form.controls();
    return std::any_of(controls.begin(), controls.end(),
        [&](const Control* control) { return control->container() == &item; });
}

bool MenuViews::has_something_to_offer(const MenuItem& item) const
{
    if (item.Click)
        return true;
    return std::any_of(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return entry.item->container() == &item && entry.item->Visible
            && has_something_to_offer(*entry.item);
    });
}

void MenuViews::draw(Entry& entry)
{
    const MenuItem& item = *entry.item;
    const bool separator = item.Caption.get() == "-";
    if (entry.caption != item.Caption.get()) {
        entry.caption = item.Caption;
        entry.action->setSeparator(separator);
        entry.action->setText(separator ? QString() : to_qt(item.Caption).trimmed());
    }
    if (!entry.menu && entry.shortcut != item.Shortcut) {
        entry.shortcut = item.Shortcut;
        entry.action->setShortcut(QKeySequence::fromString(to_qt(item.Shortcut)));
    }
    entry.action->setEnabled(item.Enabled);
    entry.action->setVisible(item.Visible && (separator || has_something_to_offer(item)));
}

void MenuViews::control_changed()
{
    // One change of state touches a dozen items; they are drawn together, once.
    if (m_update_is_due)
        return;
    m_update_is_due = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_update_is_due = false;
            for (Entry& entry : m_entries)
                draw(entry);
        },
        Qt::QueuedConnection);
}

QMenu* MenuViews::menu_of(const std::string& name) const
{
    for (const Entry& entry : m_entries) {
        if (entry.item->name() == name)
            return entry.menu;
    }
    return nullptr;
}

// Tool bars --------------------------------------------------------------------------------------

ToolBarView::ToolBarView(ToolBar& control, const MessageGate& gate, QMainWindow& window)
    : m_control(&control)
    , m_bar(*window.addToolBar(QString()))
{
    m_bar.setObjectName(to_qt(control.name()));
    m_bar.setMovable(false);
    m_bar.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    int index = 0;
    for (const BarMember& button : control.Buttons()) {
        ++index;
        if (button.key().empty()) {
            m_actions.push_back(m_bar.addSeparator());
            continue;
        }
        m_actions.push_back(
            m_bar.addAction(icon_of_command(button.key(), IconPlace::tool_bar), {}));
        connect(m_actions.back(), &QAction::triggered, this, [this, index, &gate] {
            if (m_control && gate.lets_user_at(m_bar))
                attempt([&] { m_control->user_press(index); });
        });
    }
    control.set_view(this);
    control_changed();
}

void ToolBarView::control_changed()
{
    if (!m_control)
        return;
    m_bar.setWindowTitle(to_qt(m_control->Caption)); // what assistive technologies call it
    const bool visible = m_control->Visible && !m_actions.empty();
    if (std::exchange(m_is_visible, visible) != visible)
        m_bar.setVisible(visible); // lays it out anew, even if it stays as it is
    m_bar.setEnabled(m_control->Enabled);
    for (std::size_t i = 0; i < m_actions.size(); ++i) {
        const BarMember& button = m_control->Buttons()[i];
        m_actions[i]->setEnabled(button.Enabled);
        m_actions[i]->setVisible(button.Visible);
        m_actions[i]->setText(text_of(button));
        m_actions[i]->setToolTip(to_qt(button.ToolTipText));
    }
}

// Status bar -------------------------------------------------------------------------------------

StatusBarView::StatusBarView(StatusBar& control, QMainWindow& window)
    : m_control(&control)
    , m_bar(*window.statusBar())
{
    m_bar.setObjectName(to_qt(control.name()));
    for (const StatusBar::Panel& panel : control.panels()) {
        m_panels.push_back(&make_child<ElidedLabel>(&m_bar));
        m_panels.back()->setObjectName(to_qt(control.name() + "." + panel.key));
        m_panels.back()->setMaximumWidth(to_pixels(panel.width));
        m_bar.addWidget(m_panels.back(), static_cast<int>(panel.width));
    }
    m_bar.addWidget(&make_child<QWidget>(&m_bar), 1); // takes the rest
    m_minute.setSingleShot(true);
    m_minute.setTimerType(Qt::PreciseTimer);
    connect(&m_minute, &QTimer::timeout, this, [this] { show_clock(); });
    m_bar.installEventFilter(this);
    control.set_view(this);
    control_changed();
}

void StatusBarView::detach()
{
    m_control = nullptr;
    m_minute.stop();
}

void StatusBarView::control_changed()
{
    if (!m_control)
        return;
    m_bar.setAccessibleName(to_qt(m_control->Caption));
    m_bar.setVisible(m_control->Visible);
    m_bar.setEnabled(m_control->Enabled);
    for (std::size_t i = 0; i < m_panels.size(); ++i) {
        if (m_control->panels()[i].kind != StatusBar::PanelKind::text)
            continue;
        const QString text = to_qt(m_control->PanelText(static_cast<int>(i) + 1));
        if (m_panels[i]->text() == text)
            continue;
        m_panels[i]->setText(text);
        m_panels[i]->setToolTip(text);
    }
}

void StatusBarView::show_clock()
{
    if (!m_control)
        return;
    const QDateTime now = QDateTime::currentDateTime();
    for (std::size_t i = 0; i < m_panels.size(); ++i) {
        const StatusBar::PanelKind kind = m_control->panels()[i].kind;
        if (kind == StatusBar::PanelKind::text)
            continue;
        const QString text = kind == StatusBar::PanelKind::date
            ? QLocale().toString(now.date(), QLocale::ShortFormat)
            : QLocale().toString(now.time(), without_seconds(QLocale()));
        m_panels[i]->setText(text);
        m_panels[i]->setMinimumWidth(m_panels[i]->fontMetrics().horizontalAdvance(text));
    }
    constexpr int minute_ms = 60'000;
    m_minute.start(minute_ms - now.time().msecsSinceStartOfDay() % minute_ms + 1);
}

bool StatusBarView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_bar && event->type() == QEvent::Show)
        show_clock();
    else if (watched == &m_bar && event->type() == QEvent::Hide)
        m_minute.stop();
    return QObject::eventFilter(watched, event);
}

} // namespace tessavox
