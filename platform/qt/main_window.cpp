#include "platform/qt/main_window.h"

#include "platform/controls/bars.h"
#include "platform/controls/menu_item.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/document_area.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/twips.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>

#include <string_view>

namespace tessavox {
namespace {

/// The menu at whose end the open documents are listed.
constexpr char document_list_menu[] = "mnuWindow";
constexpr QSize smallest_window{ 480, 320 };
constexpr int sign_side = 16;

} // namespace

class MainWindow::Frame : public QMainWindow {
public:
    Frame()
        : documents(make_child<DocumentArea>(this))
        , canvas(make_child<QWidget>(this))
    {
        canvas.hide();
        setCentralWidget(&documents);
        setMinimumSize(smallest_window);
        setContextMenuPolicy(Qt::NoContextMenu); // it would offer to hide the bars
        menuBar()->installEventFilter(this);
    }

    /// The sign of a document that fills the window stands in the menu bar. The toolkit draws it
    /// out of its middle, and cut, where the display is scaled.
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto is_sign = [](const QObject& one) {
            return std::string_view(one.metaObject()->className()) == "QMdi::ControlLabel";
        };
        if (watched == menuBar() && event->type() == QEvent::ChildAdded) {
            QObject* const added = static_cast<QChildEvent*>(event)->child();
            if (is_sign(*added))
                added->installEventFilter(this);
        } else if (event->type() == QEvent::Paint && is_sign(*watched)) {
            auto& sign = static_cast<QWidget&>(*watched);
            QPainter painter(&sign);
            QRect place({}, QSize(sign_side, sign_side));
            place.moveCenter(sign.visibleRegion().boundingRect().center());
            QApplication::windowIcon().paint(&painter, place);
            return true;
        }
        return QMainWindow::eventFilter(watched, event);
    }

    DocumentArea& documents;
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
        if (event->type() == QEvent::PaletteChange)
            owner->palette_changed();
        // The toolkit composes a title of its own, but forgets documents from before the first
        // show.
        if (event->type() == QEvent::WindowTitleChange)
            owner->show_title();
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
    , m_documents(m_frame.documents)
{
    m_frame.owner = this;
    m_menus = std::make_unique<MenuViews>(form, gate, m_frame);
    for (Control* control : form.controls()) {
        if (auto* bar = dynamic_cast<ToolBar*>(control); bar && !bar->Buttons().empty())
            m_tool_bars.push_back(std::make_unique<ToolBarView>(*bar, gate, m_frame));
        if (auto* bar = dynamic_cast<StatusBar*>(control))
            m_status_bars.push_back(std::make_unique<StatusBarView>(*bar, m_frame));
    }
    m_documents.resized = [this] { report_area(); };
    m_documents.retitled = [this] { show_title(); };
    if (QMenu* menu = m_menus->menu_of(document_list_menu))
        QObject::connect(
            menu, &QMenu::aboutToShow, &m_frame, [this, menu] { m_documents.list_in(*menu); });
    resize_to({ to_pixels(form.Width), to_pixels(form.Height) });
}

MainWindow::~MainWindow()
{
    leave_frame();
}

void MainWindow::leave_frame()
{
    m_frame.owner = nullptr;
    m_documents.resized = nullptr;
    m_documents.retitled = nullptr;
}

void MainWindow::detach()
{
    leave_frame();
    m_menus->detach();
    for (const auto& bar : m_tool_bars)
        bar->detach();
    for (const auto& bar : m_status_bars)
        bar->detach();
    QtFormWindow::detach();
}

QMenu* MainWindow::menu_of(const MenuItem& item) const
{
    return m_menus->menu_of(item.name());
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

// The form's caption, and that of the document which fills the window.
void MainWindow::show_title()
{
    if (!form())
        return;
    QString title = as_title(form()->Caption);
    if (const QString document = m_documents.maximised_title(); !document.isEmpty())
        title += " - [" + document + "]";
    if (m_frame.windowTitle() != title)
        m_frame.setWindowTitle(title);
}

void MainWindow::report_area()
{
    report_client_size(m_documents.viewport()->size());
}

} // namespace tessavox
