// The strips along the edges of a window: tabs, tool buttons, status panels.
#pragma once

#include "platform/controls/control.h"

#include <deque>
#include <vector>

namespace tessavox {

class TabStrip : public Control {
public:
    struct Tab {
        std::string key;
        std::string caption;
        std::string tool_tip;
    };
    TabStrip(Form& form, std::string name, std::vector<Tab> tabs);

    const std::vector<Tab>& tabs() const { return m_tabs; }
    /// Counted from 0. A change runs Click. @throws Failure if there is no such tab.
    Property<int> SelectedItem;
    Handler Click;

private:
    std::vector<Tab> m_tabs;
};

class ToolBar : public Control {
public:
    struct Button {
        std::string Key; // empty: a separator
        std::string caption;
        std::string ToolTipText;
        bool Enabled = true;
    };
    ToolBar(Form& form, std::string name, std::vector<Button> buttons)
        : Control(form, std::move(name), "Toolbar")
        , m_buttons(std::move(buttons))
    {
    }
    const std::vector<Button>& buttons() const { return m_buttons; }
    /// Buttons are counted from 1, separators too. @throws Failure if there is no such button.
    void set_button_enabled(int index, bool enabled);
    std::function<void(int index)> ButtonClick;

    void user_press(int index);

private:
    std::vector<Button> m_buttons;
};

class StatusBar : public Control {
public:
    enum class PanelKind { text, date, time };
    /// A panel of kind date or time shows the system's by itself.
    struct Panel {
        std::string key;
        double width; // twips
        PanelKind kind = PanelKind::text;
    };
    StatusBar(Form& form, std::string name, std::vector<Panel> panels);

    const std::vector<Panel>& panels() const { return m_panels; }
    /// The text of a panel by its number from 1, or by its key. @throws Failure if there is none.
    Property<std::string>& PanelText(int number);
    Property<std::string>& PanelText(const std::string& key);

private:
    std::vector<Panel> m_panels;
    std::deque<Property<std::string>> m_texts;
};

} // namespace tessavox
