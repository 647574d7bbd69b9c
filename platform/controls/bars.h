// The strips along the edges of a window: tabs, tool buttons, status panels.
#pragma once

#include "platform/controls/control.h"

#include <deque>
#include <vector>

namespace tessavox {

/// What a tab or a tool button is by design. The texts are those that it has until it is given
/// others by the numbers in `Tag` and `ToolTipText`.
struct BarMemberDesign {
    std::string key = {}; // of a tool bar's button: empty for a separator
    std::string Caption = {};
    std::string Tag = {};
    std::string ToolTipText = {};
};

/// A tab, or a button of a tool bar. Its texts can change while it is shown.
class BarMember {
public:
    BarMember(const BarMemberDesign& design, const std::function<void()>& announce);

    const std::string& key() const { return m_key; }
    Property<std::string> Caption;
    Property<std::string> Tag;
    Property<std::string> ToolTipText;
    Property<bool> Enabled;
    Property<bool> Visible;

private:
    std::string m_key;
};

class TabStrip : public Control {
public:
    TabStrip(Form& form, std::string name, const std::vector<BarMemberDesign>& tabs);

    /// In their order; SelectedItem counts from 0.
    std::deque<BarMember>& Tabs() { return m_tabs; }
    const std::deque<BarMember>& Tabs() const { return m_tabs; }
    /// A change by code runs Click. @throws Failure if there is no such tab.
    Property<int> SelectedItem;
    /// Runs at a click of the user too, also on the tab that is in front already.
    Handler Click;

    void user_select(int index);

private:
    void require(int index) const;
    std::deque<BarMember> m_tabs;
};

class ToolBar : public Control {
public:
    ToolBar(Form& form, std::string name, const std::vector<BarMemberDesign>& buttons);

    std::deque<BarMember>& Buttons() { return m_buttons; }
    const std::deque<BarMember>& Buttons() const { return m_buttons; }
    /// Counted from 1, separators too. @throws Failure if there is no such button.
    BarMember& button(int index);
    std::function<void(int index)> ButtonClick;

    void user_press(int index);

private:
    std::deque<BarMember> m_buttons;
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
