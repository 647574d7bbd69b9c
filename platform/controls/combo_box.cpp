#include "platform/controls/combo_box.h"

#include "platform/failure.h"

#include <algorithm>

namespace tessavox {

ComboBox::ComboBox(Form& form, std::string name, ComboBoxStyle style)
    : Control(form, std::move(name), "ComboBox")
    , ListIndex(-1, announcer(), [this](int index) { choose(index); })
    , Text({}, announcer(), [this](std::string text) { assign_text(std::move(text)); })
    , m_style(style)
{
}

int ComboBox::AddItem(std::string text)
{
    m_entries.push_back({ std::move(text), 0 });
    ++m_version;
    announce();
    return ListCount() - 1;
}

std::size_t ComboBox::checked(int index) const
{
    if (index < 0 || index >= ListCount())
        throw Failure(name() + " has no entry " + std::to_string(index));
    return static_cast<std::size_t>(index);
}

const std::string& ComboBox::List(int index) const
{
    return m_entries[checked(index)].text;
}

int ComboBox::ItemData(int index) const
{
    return m_entries[checked(index)].data;
}

void ComboBox::set_ItemData(int index, int data)
{
    m_entries[checked(index)].data = data;
}

void ComboBox::choose(int index)
{
    if (index == -1) {
        ListIndex.store(-1);
        if (m_style == ComboBoxStyle::list_only)
            Text.store({});
        return;
    }
    const std::string text = List(index);
    ListIndex.store(index);
    Text.store(text);
    if (Click)
        Click();
}

void ComboBox::assign_text(std::string text)
{
    if (m_style == ComboBoxStyle::editable) {
        user_edit(std::move(text));
        return;
    }
    const auto found = std::find_if(
        m_entries.begin(), m_entries.end(), [&](const Entry& entry) { return entry.text == text; });
    if (found != m_entries.end())
        choose(static_cast<int>(found - m_entries.begin()));
}

void ComboBox::user_edit(std::string text)
{
    if (Text.store(std::move(text)))
        ListIndex.store(-1);
}

} // namespace tessavox
