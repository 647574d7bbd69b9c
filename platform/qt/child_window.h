// The window of a document, inside the main window.
#pragma once

#include "platform/qt/form_windows.h"

#include <QPointer>

class QMdiSubWindow;

namespace tessavox {

class DocumentArea;

class ChildWindow : public QtFormWindow {
public:
    ChildWindow(Form& form, MessageGate& gate, DocumentArea& area);
    ~ChildWindow() override;

    /// @throws Failure also while another document is in front, which must stay there: one that is
    /// only laid out would come forward by it.
    void focus(Control& control) override;
    void bring_forward() override;
    void control_changed() override;
    void detach() override;

private:
    class ClientScroll;
    class SubWindow;
    ChildWindow(
        Form& form, MessageGate& gate, DocumentArea& area, std::unique_ptr<SubWindow> window);
    void show_first() override;
    void resize_to(const QSize& pixels) override;
    void user_activates();
    void leave_area();
    void client_sized();

    QPointer<DocumentArea> m_area; // null once the main window has gone
    SubWindow& m_window;
    bool m_extent_is_known = false;
};

} // namespace tessavox
