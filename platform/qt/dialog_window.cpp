#include "platform/qt/dialog_window.h"

#include "platform/qt/child_widget.h"
#include "platform/qt/twips.h"

#include <QCloseEvent>
#include <QDialog>

namespace tessavox {

class DialogWindow::Dialog : public QDialog {
public:
    Dialog()
        : canvas(make_child<ClientArea>(this))
    {
    }

    void reject() override { close(); } // the Escape key

    ClientArea& canvas;
    DialogWindow* owner = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->setAccepted(!owner || owner->user_closes());
    }
};

DialogWindow::DialogWindow(Form& form, MessageGate& gate)
    : DialogWindow(form, gate, std::make_unique<Dialog>())
{
}

DialogWindow::DialogWindow(Form& form, MessageGate& gate, std::unique_ptr<Dialog> dialog)
    : QtFormWindow(form, gate, *dialog, dialog->canvas)
    , m_dialog(*dialog.release())
{
    m_dialog.owner = this;
    m_dialog.canvas.sized = [this] { report_client_size(m_dialog.canvas.size()); };
    m_dialog.canvas.restyled = [this] { redraw(); };
    resize_to({ to_pixels(form.Width), to_pixels(form.Height) });
}

DialogWindow::~DialogWindow() = default;

void DialogWindow::detach()
{
    m_dialog.owner = nullptr;
    m_dialog.canvas.sized = nullptr;
    m_dialog.canvas.restyled = nullptr;
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
}

void DialogWindow::show_first()
{
    m_dialog.show();
}

} // namespace tessavox
