#include "platform/qt/form_windows.h"

#include "platform/controls/menu_item.h"
#include "platform/failure.h"
#include "platform/qt/child_window.h"
#include "platform/qt/dialog_window.h"
#include "platform/qt/document_area.h"
#include "platform/qt/main_window.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/quiet_assistance.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/twips.h"
#include "platform/qt/x_server.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace tessavox {
namespace {

Qt::WindowStates with_state(Qt::WindowStates states, WindowState state)
{
    states.setFlag(Qt::WindowMinimized, state == WindowState::minimised);
    states.setFlag(Qt::WindowMaximized, state == WindowState::maximised);
    return states;
}

/// Keeps a closed window until control is back in the event loop that the closing came from.
class ClosedWindow : public QObject {
public:
    ClosedWindow(std::unique_ptr<FormWindow> window, QObject* parent)
        : QObject(parent)
        , m_window(std::move(window))
    {
        deleteLater();
    }

private:
    std::unique_ptr<FormWindow> m_window;
};

} // namespace

QtFormWindow::QtFormWindow(Form& form, MessageGate& gate, QWidget& top, QWidget& canvas)
    : m_form(&form)
    , m_gate(gate)
    , m_top(&top)
    , m_canvas(canvas)
    , m_left(form.Left)
    , m_top_edge(form.Top)
    , m_width(form.Width)
    , m_height(form.Height)
{
    top.setObjectName(to_qt(form.name()));
    canvas.setObjectName("client"); // by which a skin knows our controls from the toolkit's dialogs
    form.set_view(this);
    for (Control* control : form.controls()) {
        if (auto* timer = dynamic_cast<Timer*>(control))
            m_timers.push_back(std::make_unique<TimerView>(*timer, gate));
    }
}

QtFormWindow::~QtFormWindow()
{
    if (m_views)
        m_views->detach();
    delete m_top.data(); // unless its own parent went first
}

void QtFormWindow::detach()
{
    m_form = nullptr;
    if (m_views)
        m_views->detach();
    for (const auto& timer : m_timers)
        timer->detach();
    if (m_top)
        m_top->hide();
}

void QtFormWindow::focus(Control& control)
{
    WidgetView* view = m_views ? m_views->view_of(control) : nullptr;
    if (!view || !view->focus_widget().isVisible())
        throw Failure(control.name() + " can't take the focus: its window isn't shown");
    view->focus_widget().setFocus(Qt::OtherFocusReason);
}

void QtFormWindow::control_changed()
{
    if (!m_form || !m_top)
        return;
    // The main window's title also tells the maximised document, so it isn't set again for nothing.
    if (m_caption != m_form->Caption.get()) {
        m_caption = m_form->Caption;
        m_top->setWindowTitle(as_title(m_caption));
    }
    if (m_width != m_form->Width || m_height != m_form->Height) {
        m_width = m_form->Width;
        m_height = m_form->Height;
        resize_to({ to_pixels(m_width), to_pixels(m_height) });
    }
    if (m_left != m_form->Left || m_top_edge != m_form->Top)
        move_to_place();
    const bool first = m_form->Visible && !m_views;
    if (first)
        make_and_show();
    if (m_form && (m_state != m_form->window_state)) {
        m_state = m_form->window_state;
        m_top->setWindowState(with_state(m_top->windowState(), m_state));
    }
    if (m_form && !first)
        show_or_hide();
}

// A handler that brings a minimised window back shows it first and makes it normal then. Shown in
// between, it would be reported as minimised once more, and hide again.
void QtFormWindow::show_or_hide()
{
    const bool comes = m_form->Visible && !m_top->isVisible();
    if (!comes || m_form->window_state != WindowState::minimised)
        m_top->setVisible(m_form->Visible);
    else if (!std::exchange(m_show_waits, true))
        QMetaObject::invokeMethod(
            m_top,
            [this] {
                m_show_waits = false;
                if (m_form)
                    m_top->setVisible(m_form->Visible);
            },
            Qt::QueuedConnection);
}

void QtFormWindow::make_and_show()
{
    {
        const QuietAssistance quiet;
        m_views.emplace(*m_form, m_gate, m_canvas);
        m_views->name_all();
    }
    show_first();
}

void QtFormWindow::redraw()
{
    if (m_views)
        m_views->redraw_all();
}

// A form counts from the corner of the screen, which isn't always that of the desktop, and its
// title must not come to lie under a panel. Where only the height is asked for, it stands in the
// middle.
void QtFormWindow::move_to_place()
{
    const bool any_left = m_left == m_form->Left && !m_views;
    m_left = m_form->Left;
    m_top_edge = m_form->Top;
    const QRect room = m_top->screen()->availableGeometry();
    const QPoint place
        = m_top->screen()->geometry().topLeft() + QPoint(to_pixels(m_left), to_pixels(m_top_edge));
    m_top->move(any_left ? room.center().x() - m_top->width() / 2 : place.x(),
        std::max(room.top(), place.y()));
}

void QtFormWindow::report_place(const QRect& frame)
{
    if (!m_form)
        return;
    m_left = to_twips(frame.left());
    m_top_edge = to_twips(frame.top());
    m_width = to_twips(frame.width());
    m_height = to_twips(frame.height());
    m_form->placed(m_left, m_top_edge, m_width, m_height);
}

// The windows that are moved so are of fixed size, so that only their place changes.
void QtFormWindow::SetWindowPos(Stacking stacking, const PixelBox& box)
{
    const bool on_top = stacking == Stacking::topmost;
    if (m_top->windowFlags().testFlag(Qt::WindowStaysOnTopHint) != on_top) {
        const bool is_visible = m_top->isVisible();
        m_top->setWindowFlag(Qt::WindowStaysOnTopHint, on_top);
        m_top->setVisible(is_visible); // the toolkit hides a window whose flags change
    }
    if (!m_views)
        return;
    m_top->move(box.left, box.top);
    if (on_top)
        x_server::keep_above(static_cast<std::uint32_t>(m_top->winId()));
    report_place({ QPoint(box.left, box.top), m_top->frameSize() });
}

void QtFormWindow::PopupMenu(const MenuItem& item)
{
    QMenu* const menu = menu_of(item);
    if (!menu)
        throw Failure(item.name() + " is no menu of this window");
    menu->popup(QCursor::pos());
}

QMenu* QtFormWindow::menu_of(const MenuItem&) const
{
    return nullptr;
}

// A document has the look of the window that it lies in: what has two sheets is matched with each.
void QtFormWindow::set_style_sheet(const QString& sheet)
{
    QWidget* const window = m_top->window();
    if (window->styleSheet() != sheet)
        window->setStyleSheet(sheet);
}

void QtFormWindow::palette_changed()
{
    const qint64 palette = QApplication::palette().cacheKey();
    if (m_top && std::exchange(m_palette, palette) != palette && !m_top->styleSheet().isEmpty())
        m_top->setStyleSheet(m_top->styleSheet());
}

void QtFormWindow::report_client_size(const QSize& pixels)
{
    if (!m_form || pixels == m_reported)
        return;
    m_reported = pixels;
    m_form->client_resized(to_twips(pixels.width()), to_twips(pixels.height()));
}

bool QtFormWindow::user_closes()
{
    if (m_top && !m_gate.lets_user_at(*m_top))
        return false;
    bool gone = true;
    if (Form* form = m_form)
        attempt([&] { gone = form->user_closed(); });
    return gone;
}

void QtFormWindow::user_changes_state()
{
    if (!m_form || !m_views)
        return;
    const Qt::WindowStates states = m_top->windowState();
    m_state = states.testFlag(Qt::WindowMinimized) ? WindowState::minimised
        : states.testFlag(Qt::WindowMaximized)     ? WindowState::maximised
                                                   : WindowState::normal;
    attempt([this] { m_form->user_changed_state(m_state); });
}

std::unique_ptr<FormWindow> QtFormWindows::open(Form& form)
{
    switch (form.kind()) {
    case FormKind::mdi_parent: {
        auto window = std::make_unique<MainWindow>(form, m_gate);
        m_main = window.get();
        return window;
    }
    case FormKind::mdi_child:
        if (!m_main)
            throw Failure(form.name() + " has no window to lie in");
        return std::make_unique<ChildWindow>(form, m_gate, m_main->documents());
    case FormKind::dialog:
    case FormKind::tool_window:
        return std::make_unique<DialogWindow>(form, m_gate);
    }
    throw Failure(form.name() + " is of no known kind");
}

void QtFormWindows::close(std::unique_ptr<FormWindow> window)
{
    if (window.get() == m_main)
        m_main = nullptr;
    if (auto* ours = dynamic_cast<QtFormWindow*>(window.get()))
        ours->detach();
    // It deletes itself.
    static_cast<void>(std::make_unique<ClosedWindow>(std::move(window), &m_closed).release());
}

QMenu* QtFormWindows::menu_of(const MenuItem& item) const
{
    return m_main ? m_main->menu_of(item) : nullptr;
}

void QtFormWindows::Arrange(Arrangement arrangement)
{
    if (m_main)
        m_main->documents().Arrange(arrangement);
}

void ClientArea::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    const bool new_look = event->type() == QEvent::PaletteChange
        || event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (new_look && restyled)
        restyled();
}

void ClientArea::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (sized)
        sized();
}

void ClientArea::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (isVisible() && sized)
        sized();
}

void ClientArea::mousePressEvent(QMouseEvent* event)
{
    if (mouse)
        mouse(*event);
}

void ClientArea::mouseMoveEvent(QMouseEvent* event)
{
    if (mouse)
        mouse(*event);
}

} // namespace tessavox
