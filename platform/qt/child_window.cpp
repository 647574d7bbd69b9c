#include "platform/qt/child_window.h"

#include "platform/failure.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/main_window.h"
#include "platform/qt/twips.h"

#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollArea>

namespace tessavox {

namespace {

/// Where the screen is too small for the controls of fixed size, the client area scrolls, and
/// follows the focus. A pane that is larger than the screen itself moves nothing.
class ClientScroll : public QScrollArea {
public:
    using QScrollArea::QScrollArea;

protected:
    bool focusNextPrevChild(bool next) override
    {
        if (!QAbstractScrollArea::focusNextPrevChild(next))
            return false;
        constexpr int margin = 2;
        QWidget* focused = focusWidget();
        if (focused && focused->height() < viewport()->height())
            ensureWidgetVisible(focused, margin, margin);
        return true;
    }
};

} // namespace

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

    QScrollArea& scroll;
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
        if (owner && owner->m_parent)
            owner->m_parent->show_title();
    }
};

ChildWindow::ChildWindow(Form& form, MessageGate& gate, MainWindow& parent)
    : ChildWindow(form, gate, parent, std::make_unique<SubWindow>())
{
}

ChildWindow::ChildWindow(
    Form& form, MessageGate& gate, MainWindow& parent, std::unique_ptr<SubWindow> window)
    : QtFormWindow(form, gate, *window, window->canvas)
    , m_parent(&parent)
    , m_window(*window.release())
{
    m_window.owner = this;
    m_window.canvas.sized = [this] { client_sized(); };
    m_window.canvas.restyled = [this] { views().redraw_all(); };
    parent.add(*this);
    m_window.hide(); // until the form is loaded
    resize_to({ to_pixels(form.Width), to_pixels(form.Height) });
}

ChildWindow::~ChildWindow()
{
    if (m_parent)
        m_parent->remove(*this);
}

QMdiSubWindow& ChildWindow::sub_window() const
{
    return m_window;
}

void ChildWindow::detach()
{
    m_window.owner = nullptr;
    m_window.canvas.sized = nullptr;
    m_window.canvas.restyled = nullptr;
    if (m_parent)
        m_parent->remove(*this);
    m_parent = nullptr;
    QtFormWindow::detach();
}

void ChildWindow::bring_forward()
{
    if (!m_parent)
        return;
    m_parent->area().setActiveSubWindow(&m_window);
    if (m_parent->next_is_maximised() && !m_window.isHidden())
        m_window.showMaximized();
}

void ChildWindow::user_activates()
{
    if (Form* activated = form())
        attempt([activated] { activated->user_activated(); });
}

void ChildWindow::control_changed()
{
    // Behind a document that filled the main window comes one that does so too.
    const bool goes = form() && !form()->Visible && !m_window.isHidden();
    if (goes && m_parent && m_window.isMaximized())
        m_parent->maximise_next();
    QtFormWindow::control_changed();
    if (m_parent)
        m_parent->show_title();
}

void ChildWindow::resize_to(const QSize& pixels)
{
    const QWidget& area = *m_parent->area().viewport();
    m_window.resize(area.isVisible() ? pixels.boundedTo(area.size()) : pixels);
}

void ChildWindow::show_first()
{
    // The first document fills the main window, and others do as the one before them does.
    const QMdiSubWindow* before = m_parent->area().activeSubWindow();
    if (!before || before->isMaximized())
        m_window.showMaximized();
    else
        m_window.show();
}

void ChildWindow::client_sized()
{
    if (!m_parent)
        return;
    m_parent->report_area();
    report_client_size(m_window.canvas.size());
    if (m_extent_is_known || !form())
        return;
    m_extent_is_known = true;
    m_window.canvas.setMinimumSize(views().fixed_extent());
}

} // namespace tessavox
