#include "platform/controls/bars.h"

#include "platform/failure.h"

namespace tessavox {

TabStrip::TabStrip(Form& form, std::string name, std::vector<Tab> tabs)
    : Control(form, std::move(name), "TabStrip")
    , SelectedItem(0, announcer(),
          [this](int wanted) {
              if (wanted < 0 || wanted >= static_cast<int>(m_tabs.size()))
                  throw Failure(this->name() + " has no tab " + std::to_string(wanted));
              if (SelectedItem.store(wanted) && Click)
                  Click();
          })
    , m_tabs(std::move(tabs))
{
}

void ToolBar::set_button_enabled(int index, bool enabled)
{
    if (index < 1 || index > static_cast<int>(m_buttons.size()))
        throw Failure(name() + " has no button " + std::to_string(index));
    bool& kept = m_buttons[static_cast<std::size_t>(index - 1)].Enabled;
    if (kept == enabled)
        return;
    kept = enabled;
    announce();
}

void ToolBar::user_press(int index)
{
    const bool known = index >= 1 && index <= static_cast<int>(m_buttons.size());
    if (known && Enabled && m_buttons[static_cast<std::size_t>(index - 1)].Enabled && ButtonClick)
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
