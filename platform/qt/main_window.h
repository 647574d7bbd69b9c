// The window that holds the documents.
#pragma once

#include "platform/qt/form_windows.h"
#include "platform/qt/frame_views.h"

#include <utility>

class QMainWindow;
class QMdiArea;
class QMdiSubWindow;

namespace tessavox {

class ChildWindow;

class MainWindow : public QtFormWindow {
public:
    MainWindow(Form& form, MessageGate& gate);
    ~MainWindow() override;

    void bring_forward() override;
    void detach() override;

    QMdiArea& area() const { return m_area; }
    void add(ChildWindow& child);
    void remove(ChildWindow& child);
    /// The documents lie in an area whose size their forms ask for, so it is reported before
    /// theirs.
    void report_area();
    /// The form's caption, and that of the document which fills the window.
    void show_title();
    /// The document that comes forward next is to fill the window.
    void maximise_next() { m_next_is_maximised = true; }
    bool next_is_maximised() { return std::exchange(m_next_is_maximised, false); }

private:
    class Frame;
    MainWindow(Form& form, MessageGate& gate, std::unique_ptr<Frame> frame);
    void show_first() override;
    void resize_to(const QSize& pixels) override;
    void user_activates(QMdiSubWindow* window);
    void list_documents();

    Frame& m_frame;
    QMdiArea& m_area;
    std::vector<ChildWindow*> m_children;
    std::unique_ptr<MenuViews> m_menus;
    std::vector<std::unique_ptr<ToolBarView>> m_tool_bars;
    std::vector<std::unique_ptr<StatusBarView>> m_status_bars;
    std::vector<QAction*> m_listed;
    bool m_next_is_maximised = false;
};

} // namespace tessavox
