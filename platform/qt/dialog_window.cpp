#include "platform/qt/dialog_window.h"

#include "platform/qt/child_widget.h"
#include "platform/qt/twips.h"

#include <QCloseEvent>
#include <QDialog>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWindow>

#include <algorithm>

namespace tessavox {

namespace {

/// Behind the buttons of a window that can be dragged by what is free between them: the pointer
/// tells of that there, and so do dots at the end of the row. Mouse events pass it by.
class Grip : public QWidget {
public:
    explicit Grip(QWidget* canvas)
        : QWidget(canvas)
    {
        setCursor(Qt::SizeAllCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        constexpr int dot = 2;
        constexpr int step = 4;
        constexpr int columns = 2;
        constexpr int rows = 3;
        QRect place({}, QSize(columns * step - dot, rows * step - dot));
        place.moveCenter(end_of_row().center());
        QPainter painter(this);
        for (int column = 0; column < columns; ++column) {
            for (int row = 0; row < rows; ++row)
                painter.fillRect(
                    place.x() + column * step, place.y() + row * step, dot, dot, palette().mid());
        }
    }

private:
    QRect end_of_row() const
    {
        const auto visual = [this](const QRect& place) {
            return QStyle::visualRect(layoutDirection(), rect(), place);
        };
        int taken = 0;
        for (const QWidget* widget : parentWidget()->findChildren<QWidget*>()) {
            if (widget != this && widget->isVisible() && widget->geometry().intersects(rect()))
                taken = std::max(taken, visual(widget->geometry()).x() + widget->width());
        }
        return visual({ taken, 0, width() - taken, height() });
    }
};

} // namespace

class DialogWindow::Dialog : public QDialog {
public:
    explicit Dialog(FormKind kind)
        : canvas(make_child<ClientArea>(this))
    {
        if (kind != FormKind::tool_window)
            return;
        setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint
            | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
        grip = &make_child<Grip>(&canvas);
    }

    void reject() override { close(); } // the Escape key

    ClientArea& canvas;
    QWidget* grip = nullptr; // none in a window that is dragged by its frame only
    DialogWindow* owner = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->setAccepted(!owner || owner->user_closes());
    }

    void moveEvent(QMoveEvent* event) override
    {
        QDialog::moveEvent(event);
        // What the window system reports during a drag is behind what was asked for.
        if (owner && isVisible() && QGuiApplication::mouseButtons() == Qt::NoButton)
            owner->report_place(frameGeometry());
    }

    void changeEvent(QEvent* event) override
    {
        QDialog::changeEvent(event);
        if (owner && event->type() == QEvent::WindowStateChange)
            owner->user_changes_state();
        if (owner && event->type() == QEvent::PaletteChange)
            owner->palette_changed();
    }
};

DialogWindow::DialogWindow(Form& form, MessageGate& gate)
    : DialogWindow(form, gate, std::make_unique<Dialog>(form.kind()))
{
}

DialogWindow::DialogWindow(Form& form, MessageGate& gate, std::unique_ptr<Dialog> dialog)
    : QtFormWindow(form, gate, *dialog, dialog->canvas)
    , m_dialog(*dialog.release())
{
    m_dialog.owner = this;
    m_dialog.canvas.sized = [this] { report_client_size(m_dialog.canvas.size()); };
    m_dialog.canvas.restyled = [this] { redraw(); };
    m_dialog.canvas.mouse = [this](const QMouseEvent& event) { report_mouse(event); };
    resize_to({ to_pixels(form.ScaleWidth()), to_pixels(form.ScaleHeight()) });
}

DialogWindow::~DialogWindow() = default;

void DialogWindow::detach()
{
    m_dialog.owner = nullptr;
    m_dialog.canvas.sized = nullptr;
    m_dialog.canvas.restyled = nullptr;
    m_dialog.canvas.mouse = nullptr;
    QtFormWindow::detach();
}

void DialogWindow::bring_forward()
{
    m_dialog.raise();
    m_dialog.activateWindow();
}

void DialogWindow::resize_to(const QSize& pixels)
{
    m_dialog.setFixedSize(pixels);
    m_dialog.canvas.resize(pixels);
    if (m_dialog.grip)
        m_dialog.grip->resize(pixels);
}

// One with an owner stays above it, and comes up in its middle.
void DialogWindow::show_first()
{
    const auto* const owner = form()->owner() && form()->owner()->is_loaded()
        ? dynamic_cast<QtFormWindow*>(&form()->owner()->window())
        : nullptr;
    if (owner) {
        m_dialog.winId(); // so that it has a window
        m_dialog.windowHandle()->setTransientParent(owner->top().windowHandle());
        const QPoint middle = owner->top().geometry().center();
        m_dialog.move(middle - m_dialog.rect().center());
    }
    m_dialog.show();
    report_place(m_dialog.frameGeometry());
}

// Relative to where the window was put last: the window system is behind with its moves, and its
// own positions would count some of them twice.
void DialogWindow::report_mouse(const QMouseEvent& event)
{
    if (!form())
        return;
    const QPointF place = event.globalPosition()
        - QPointF(form()->Left / twips_per_pixel, form()->Top / twips_per_pixel);
    const auto x = static_cast<float>(place.x() * twips_per_pixel);
    const auto y = static_cast<float>(place.y() * twips_per_pixel);
    // The toolkit numbers the buttons alike: 1 left, 2 right.
    if (event.type() == QEvent::MouseButtonPress)
        form()->user_pressed_mouse(static_cast<int>(event.button()), x, y);
    else
        form()->user_moved_mouse(static_cast<int>(event.buttons()), x, y);
}

} // namespace tessavox
