// A window of fixed size by itself.
#pragma once

#include "platform/qt/form_windows.h"

namespace tessavox {

class DialogWindow : public QtFormWindow {
public:
    DialogWindow(Form& form, MessageGate& gate);
    ~DialogWindow() override;

    void bring_forward() override;
    void detach() override;

private:
    class Dialog;
    DialogWindow(Form& form, MessageGate& gate, std::unique_ptr<Dialog> dialog);
    void show_first() override;
    void resize_to(const QSize& pixels) override;
    void report_mouse(const QMouseEvent& event);

    Dialog& m_dialog;
};

} // namespace tessavox
