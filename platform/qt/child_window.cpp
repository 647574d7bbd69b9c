#include "platform/qt/child_window.h"

#include "platform/failure.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/document_area.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/twips.h"

#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollArea>

namespace tessavox {

/// Where the screen is too small for the controls of fixed size, the client area scrolls, and
/// follows the focus. A pane that is larger than the screen itself moves nothing.
/// What the form is told as its client area is what can be seen of it, not what can be scrolled to:
/// so the pane and its scroll bar stay in sight, and the text wraps where the user can read it.
class ChildWindow::ClientScroll : public QScrollArea {
public:
    using QScrollArea::QScrollArea;
    std::function<void()> sized;

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QScrollArea::resizeEvent(event);
        if (widget()->isVisible() && sized)
            sized();
    }

    bool focusNextPrevChild(bool next) override
    {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): the parent's shows a wider margin
        if (!QAbstractScrollArea::focusNextPrevChild(next))
            return false;
        constexpr int margin = 2;
        QWidget* focused = focusWidget();
        if (focused && focused->height() < viewport()->height())
            ensureWidgetVisible(focused, margin, margin);
        return true;
    }
};

class ChildWindow::SubWindow : public QMdiSubWindow {
public:
    SubWindow()
        : scroll(make_child<ClientScroll>(this))
        , canvas(make_child<ClientArea>())
    {
        scroll.setFrameShape(QFrame::NoFrame);
        scroll.setFocusPolicy(Qt::NoFocus);
        scroll.setWidgetResizable(true);
        scroll.setWidget(&canvas);
        setWidget(&scroll);
        setAttribute(Qt::WA_DeleteOnClose, false);
        // Were it a stop of the tab key, a screen reader would be told of the frame instead of the
        // control that the frame hands the focus to.
        setFocusPolicy(Qt::ClickFocus);
    }

    /// By which documents are cascaded: most of the area, so that each is of use and its title can
    /// be seen.
    QSize sizeHint() const override
    {
        return mdiArea() ? mdiArea()->viewport()->size() * 3 / 4 : QMdiSubWindow::sizeHint();
    }

    ClientScroll& scroll;
    ClientArea& canvas;
    ChildWindow* owner = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->setAccepted(!owner || owner->user_closes());
    }

    void changeEvent(QEvent* event) override
    {
        QMdiSubWindow::changeEvent(event);
        if (!owner || event->type() != QEvent::WindowStateChange)
            return;
        owner->user_changes_state();
        if (owner && owner->m_area)
            owner->m_area->window_changed(*this);
    }
};

ChildWindow::ChildWindow(Form& form, MessageGate& gate, DocumentArea& area)
    : ChildWindow(form, gate, area, std::make_unique<SubWindow>())
{
}

ChildWindow::ChildWindow(
    Form& form, MessageGate& gate, DocumentArea& area, std::unique_ptr<SubWindow> window)
    : QtFormWindow(form, gate, *window, window->canvas)
    , m_area(&area)
    , m_window(*window.release())
{
    m_window.owner = this;
    m_window.canvas.sized = m_window.scroll.sized = [this] { client_sized(); };
    m_window.canvas.restyled = [this] { redraw(); };
    area.add(m_window, m_window.canvas, [this] { user_activates(); });
    m_window.hide(); // until the form is loaded
    const QMargins frame = m_window.contentsMargins();
    const QSize design(to_pixels(form.Width), to_pixels(form.Height));
    resize_to(design.grownBy(frame));
}

ChildWindow::~ChildWindow()
{
    leave_area();
}

void ChildWindow::leave_area()
{
    if (m_area)
        m_area->remove(m_window);
    m_area = nullptr;
}

void ChildWindow::detach()
{
    m_window.owner = nullptr;
    m_window.canvas.sized = m_window.scroll.sized = nullptr;
    m_window.canvas.restyled = nullptr;
    leave_area();
    QtFormWindow::detach();
}

void ChildWindow::focus(Control& control)
{
    const QMdiSubWindow* front = m_area ? m_area->activeSubWindow() : nullptr;
    if (front && front != &m_window)
        throw Failure(control.name() + " can't take the focus: another document is in front");
    QtFormWindow::focus(control);
}

void ChildWindow::bring_forward()
{
    if (m_area)
        m_area->bring_forward(m_window);
}

void ChildWindow::user_activates()
{
    if (!form())
        return;
    const auto activated = form()->shared_from_this();
    if (gate().is_shut()) // an assistive technology did it
        gate().post([activated] { activated->user_activated(); });
    else
        attempt([&] { activated->user_activated(); });
}

void ChildWindow::control_changed()
{
    const bool goes = form() && !form()->Visible && !m_window.isHidden();
    if (goes && m_area)
        m_area->about_to_hide(m_window);
    QtFormWindow::control_changed();
    if (m_area)
        m_area->window_changed(m_window);
}

void ChildWindow::resize_to(const QSize& pixels)
{
    const QWidget& area = *m_area->viewport();
    m_window.resize(area.isVisible() ? pixels.boundedTo(area.size()) : pixels);
}

void ChildWindow::show_first()
{
    m_area->show_first(m_window);
}

void ChildWindow::client_sized()
{
    if (!m_area)
        return;
    // The form asks for the size of the area as well, so that is reported first.
    if (m_area->resized)
        m_area->resized();
    report_client_size(m_window.scroll.viewport()->size());
    if (!m_window.canvas.isLeftToRight())
        redraw(); // all places count from the right edge, which has moved
    if (m_extent_is_known || !form() || !views())
        return;
    m_extent_is_known = true;
    m_window.canvas.setMinimumSize(views()->fixed_extent());
}

} // namespace tessavox
