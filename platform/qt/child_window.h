// The window of a document, inside the main window.
#pragma once

#include "platform/qt/form_windows.h"

class QMdiSubWindow;

namespace tessavox {

class MainWindow;

class ChildWindow : public QtFormWindow {
public:
    ChildWindow(Form& form, MessageGate& gate, MainWindow& parent);
    ~ChildWindow() override;

    void bring_forward() override;
    void control_changed() override;
    void detach() override;
    void user_activates();
    void parent_is_gone() { m_parent = nullptr; }
    QMdiSubWindow& sub_window() const;

private:
    class SubWindow;
    ChildWindow(
        Form& form, MessageGate& gate, MainWindow& parent, std::unique_ptr<SubWindow> window);
    void show_first() override;
    void resize_to(const QSize& pixels) override;
    void client_sized();

    MainWindow* m_parent;
    SubWindow& m_window;
    bool m_extent_is_known = false;
};

} // namespace tessavox
