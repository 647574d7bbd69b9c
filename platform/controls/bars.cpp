#include "platform/controls/bars.h"

#include "platform/failure.h"

namespace tessavox {

BarMember::BarMember(const BarMemberDesign& design, const std::function<void()>& announce)
    : Caption(design.Caption, announce)
    , Tag(design.Tag, nullptr)
    , ToolTipText(design.ToolTipText, announce)
    , Enabled(true, announce)
    , Visible(true, announce)
    , m_key(design.key)
{
}

TabStrip::TabStrip(Form& form, std::string name, const std::vector<BarMemberDesign>& tabs)
    : Control(form, std::move(name), "TabStrip")
    , SelectedItem(0, announcer(), [this](int wanted) {
        require(wanted);
        if (SelectedItem.store(wanted) && Click)
            Click();
    })
{
    for (const BarMemberDesign& tab : tabs)
        m_tabs.emplace_back(tab, announcer());
}

void TabStrip::require(int index) const
{
    if (index < 0 || index >= static_cast<int>(m_tabs.size()))
        throw Failure(name() + " has no tab " + std::to_string(index));
}

void TabStrip::user_select(int index)
{
    require(index);
    SelectedItem.store(index);
    if (Enabled && Click)
        Click();
}

ToolBar::ToolBar(Form& form, std::string name, const std::vector<BarMemberDesign>& buttons)
    : Control(form, std::move(name), "Toolbar")
{
    for (const BarMemberDesign& button : buttons)
        m_buttons.emplace_back(button, announcer());
}

BarMember& ToolBar::button(int index)
{
    if (index < 1 || index > static_cast<int>(m_buttons.size()))
        throw Failure(name() + " has no button " + std::to_string(index));
    return m_buttons[static_cast<std::size_t>(index - 1)];
}

void ToolBar::user_press(int index)
{
    if (Enabled && button(index).Enabled && ButtonClick)
        ButtonClick(index);
}

StatusBar::StatusBar(Form& form, std::string name, std::vector<Panel> panels)
    : Control(form, std::move(name), "StatusBar")
    , m_panels(std::move(panels))
{
    for (std::size_t i = 0; i < m_panels.size(); ++i)
        m_texts.emplace_back(std::string(), announcer());
}

Property<std::string>& StatusBar::PanelText(int number)
{
    if (number < 1 || number > static_cast<int>(m_texts.size()))
        throw Failure(name() + " has no panel " + std::to_string(number));
    return m_texts[static_cast<std::size_t>(number - 1)];
}

Property<std::string>& StatusBar::PanelText(const std::string& key)
{
    for (std::size_t i = 0; i < m_panels.size(); ++i) {
        if (m_panels[i].key == key)
            return m_texts[i];
    }
    throw Failure(name() + " has no panel " + key);
}

} // namespace tessavox
