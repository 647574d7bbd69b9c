// The window that holds the documents.
#pragma once

#include "platform/qt/form_windows.h"
#include "platform/qt/frame_views.h"

namespace tessavox {

class DocumentArea;

class MainWindow : public QtFormWindow {
public:
    MainWindow(Form& form, MessageGate& gate);
    ~MainWindow() override;

    void bring_forward() override;
    void detach() override;
    QMenu* menu_of(const MenuItem& item) const override;

    /// What lies in it.
    DocumentArea& documents() const { return m_documents; }

private:
    class Frame;
    MainWindow(Form& form, MessageGate& gate, std::unique_ptr<Frame> frame);
    void show_first() override;
    void resize_to(const QSize& pixels) override;
    void leave_frame();
    void report_area();
    void show_title();

    Frame& m_frame;
    DocumentArea& m_documents;
    std::unique_ptr<MenuViews> m_menus;
    std::vector<std::unique_ptr<ToolBarView>> m_tool_bars;
    std::vector<std::unique_ptr<StatusBarView>> m_status_bars;
};

} // namespace tessavox
