// What stands along the edges of the main window: menus, tool bars and the status bar.
#pragma once

#include "platform/controls/control.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <unordered_map>
#include <vector>

class QAction;
class QLabel;
class QMainWindow;
class QMenu;
class QStatusBar;
class QToolBar;

namespace tessavox {

class Form;
class MenuItem;
class MessageGate;
class StatusBar;
class ToolBar;

/// The menu bar, from the menu items of a form. An item with neither a Click nor a visible item
/// below it has nothing to offer and isn't shown.
class MenuViews : public QObject, public ControlView {
public:
    MenuViews(Form& form, const MessageGate& gate, QMainWindow& window);
    void control_changed() override;
    void detach() { m_entries.clear(); }
    /// The menu of a top-level item, or null.
    QMenu* menu_of(const std::string& name) const;

private:
    struct Entry {
        MenuItem* item;
        QAction* action;
        QMenu* menu; // null for an item without items
        std::string caption; // as drawn last
        std::string shortcut;
    };
    void add(MenuItem& item, QMainWindow& window);
    void draw(Entry& entry);
    bool has_items(const MenuItem& item) const;
    bool has_something_to_offer(const MenuItem& item) const;

    Form& m_form;
    const MessageGate& m_gate;
    std::vector<Entry> m_entries;
    std::unordered_map<const Control*, QMenu*> m_menu_of;
    bool m_update_is_due = false;
};

class ToolBarView : public QObject, public ControlView {
public:
    ToolBarView(ToolBar& control, const MessageGate& gate, QMainWindow& window);
    void control_changed() override;
    void detach() { m_control = nullptr; }

private:
    ToolBar* m_control;
    QToolBar& m_bar;
    bool m_is_visible = true; // once its window is
    std::vector<QAction*> m_actions;
};

/// Panels have the widths of their design, and the rest of the bar stays empty, so that a text is
/// always found in the same place. A bar too narrow for them is shared in proportion: together they
/// are wider than many screens, and cutting the last ones off would take the clock away.
/// Date and time panels keep themselves right by one wake-up a minute, while they are on screen.
class StatusBarView : public QObject, public ControlView {
public:
    StatusBarView(StatusBar& control, QMainWindow& window);
    void control_changed() override;
    void detach();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void show_clock();

    StatusBar* m_control;
    QStatusBar& m_bar;
    std::vector<QLabel*> m_panels;
    QTimer m_minute;
};

} // namespace tessavox
