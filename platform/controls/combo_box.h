// A list of texts of which one is chosen.
#pragma once

#include "platform/controls/control.h"

#include <vector>

namespace tessavox {

enum class ComboBoxStyle {
    editable, // the text can be typed as well
    list_only, // the text is always that of the chosen entry
};

class ComboBox : public Control {
public:
    ComboBox(Form& form, std::string name, ComboBoxStyle style);

    ComboBoxStyle style() const { return m_style; }
    /// Returns the index of the new entry.
    int AddItem(std::string text);
    int ListCount() const { return static_cast<int>(m_entries.size()); }
    /// @throws Failure out of range, as the next two.
    const std::string& List(int index) const;
    int ItemData(int index) const;
    void set_ItemData(int index, int data);

    /// The chosen entry, counted from 0, or -1. An assignment runs Click, also when that entry was
    /// chosen before; -1 takes the choice away and runs nothing. @throws Failure out of range; the
    /// choice then stays.
    Property<int> ListIndex;
    /// Of a list_only box: assigning the exact text of an entry chooses the first such entry, any
    /// other text changes nothing. Of an editable one: assigning replaces the text.
    Property<std::string> Text;
    Handler Click;
    /// A key was pressed in the text, which doesn't have it yet. The code is that of the letter as
    /// a capital, 13 for either Enter key, 0 for any other; `shift` has 1 for Shift, 2 for Control,
    /// 4 for Alt.
    std::function<void(int KeyCode, int shift)> KeyDown;

    /// The user chose an entry.
    void user_choose(int index) { ListIndex = index; }
    void user_edit(std::string text);
    void user_presses_key(int code, int shift)
    {
        if (KeyDown)
            KeyDown(code, shift);
    }
    /// Grows with each change of the entries, so that a view need not compare them.
    unsigned entries_version() const { return m_version; }

private:
    void choose(int index);
    void assign_text(std::string text);
    struct Entry {
        std::string text;
        int data = 0;
    };
    std::size_t checked(int index) const;

    ComboBoxStyle m_style;
    std::vector<Entry> m_entries;
    unsigned m_version = 0;
};

} // namespace tessavox
