#include "platform/qt/main_window.h"

#include "platform/controls/bars.h"
#include "platform/failure.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/child_window.h"
#include "platform/qt/twips.h"

#include <QAction>
#include <QCloseEvent>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScreen>

#include <algorithm>

namespace tessavox {
namespace {

/// The menu at whose end the open documents are listed.
constexpr char document_list_menu[] = "mnuWindow";
constexpr QSize smallest_window{ 480, 320 };

} // namespace

class MainWindow::Frame : public QMainWindow {
public:
    Frame()
        : area(make_child<QMdiArea>(this))
        , canvas(make_child<QWidget>(this))
    {
        canvas.hide();
        area.setObjectName("documents");
        area.setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
        area.setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
        area.viewport()->installEventFilter(this);
        setCentralWidget(&area);
        setMinimumSize(smallest_window);
        setContextMenuPolicy(Qt::NoContextMenu); // it would offer to hide the bars
    }

    QMdiArea& area;
    QWidget& canvas; // the form's own plain controls, of which none is shown
    MainWindow* owner = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->setAccepted(!owner || owner->user_closes());
    }

    void changeEvent(QEvent* event) override
    {
        QMainWindow::changeEvent(event);
        if (!owner)
            return;
        if (event->type() == QEvent::WindowStateChange)
            owner->user_changes_state();
        // The toolkit composes a title of its own, but forgets documents from before the first
        // show.
        if (event->type() == QEvent::WindowTitleChange)
            owner->show_title();
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool of_area = watched == area.viewport();
        if (owner && of_area && event->type() == QEvent::Resize && area.isVisible())
            owner->report_area();
        return QMainWindow::eventFilter(watched, event);
    }

    void showEvent(QShowEvent* event) override
    {
        QMainWindow::showEvent(event);
        if (owner)
            owner->report_area();
    }
};

MainWindow::MainWindow(Form& form, MessageGate& gate)
    : MainWindow(form, gate, std::make_unique<Frame>())
{
}

MainWindow::MainWindow(Form& form, MessageGate& gate, std::unique_ptr<Frame> frame)
    : QtFormWindow(form, gate, *frame, frame->canvas)
    , m_frame(*frame.release())
    , m_area(m_frame.area)
{
    m_frame.owner = this;
    m_menus = std::make_unique<MenuViews>(form, m_frame);
    for (Control* control : form.controls()) {
        if (auto* bar = dynamic_cast<ToolBar*>(control); bar && !bar->Buttons().empty())
            m_tool_bars.push_back(std::make_unique<ToolBarView>(*bar, m_frame));
        if (auto* bar = dynamic_cast<StatusBar*>(control))
            m_status_bars.push_back(std::make_unique<StatusBarView>(*bar, m_frame));
    }
    QObject::connect(&m_area, &QMdiArea::subWindowActivated, &m_frame,
        [this](QMdiSubWindow* window) { user_activates(window); });
    if (QMenu* menu = m_menus->menu_of(document_list_menu))
        QObject::connect(menu, &QMenu::aboutToShow, &m_frame, [this] { list_documents(); });
    resize_to({ to_pixels(form.Width), to_pixels(form.Height) });
}

MainWindow::~MainWindow()
{
    m_frame.owner = nullptr;
    for (ChildWindow* child : m_children)
        child->parent_is_gone();
}

void MainWindow::detach()
{
    m_frame.owner = nullptr;
    m_menus->detach();
    for (const auto& bar : m_tool_bars)
        bar->detach();
    for (const auto& bar : m_status_bars)
        bar->detach();
    QtFormWindow::detach();
}

void MainWindow::bring_forward()
{
    m_frame.raise();
    m_frame.activateWindow();
}

void MainWindow::resize_to(const QSize& pixels)
{
    const QSize room = m_frame.screen()->availableSize();
    m_frame.resize(pixels.boundedTo(room));
}

void MainWindow::show_first()
{
    const QRect room = m_frame.screen()->availableGeometry();
    // A window wider than the screen is best used as large as the screen is.
    const bool too_wide = to_pixels(form()->Width) > room.width();
    if (too_wide && form()->window_state == WindowState::normal)
        m_frame.setWindowState(m_frame.windowState() | Qt::WindowMaximized);
    if (form()->window_state == WindowState::minimised)
        m_frame.showMinimized();
    else
        m_frame.show();
}

void MainWindow::show_title()
{
    if (!form())
        return;
    QString title = as_title(form()->Caption);
    const QMdiSubWindow* document = m_area.currentSubWindow();
    if (document && !document->isHidden() && document->isMaximized())
        title += " - [" + document->windowTitle() + "]";
    if (m_frame.windowTitle() != title)
        m_frame.setWindowTitle(title);
}

void MainWindow::report_area()
{
    report_client_size(m_area.viewport()->size());
}

void MainWindow::add(ChildWindow& child)
{
    m_children.push_back(&child);
    m_area.addSubWindow(&child.sub_window());
}

void MainWindow::remove(ChildWindow& child)
{
    std::erase(m_children, &child);
}

void MainWindow::user_activates(QMdiSubWindow* window)
{
    const auto found = std::find_if(m_children.begin(), m_children.end(),
        [&](const ChildWindow* child) { return &child->sub_window() == window; });
    if (found != m_children.end())
        (*found)->user_activates();
    show_title();
}

void MainWindow::list_documents()
{
    QMenu& menu = *m_menus->menu_of(document_list_menu);
    qDeleteAll(m_listed);
    m_listed.clear();
    if (!menu.isEmpty())
        m_listed.push_back(menu.addSeparator());
    for (ChildWindow* child : m_children) {
        QMdiSubWindow& window = child->sub_window();
        QAction* entry = menu.addAction(window.windowTitle().replace('&', "&&"), &window,
            [this, &window] { m_area.setActiveSubWindow(&window); });
        entry->setCheckable(true);
        entry->setChecked(m_area.activeSubWindow() == &window);
        m_listed.push_back(entry);
    }
}

} // namespace tessavox
