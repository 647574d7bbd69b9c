// The design of a window: where its controls stand and what they say, one row each.
#pragma once

#include "platform/controls/pick.h"

#include <span>
#include <string>

namespace tessavox {

/// A control by design. Its text is what shows until LocaliseForm gives it that of `text_id`, and
/// for good where a language has no such text.
template <class Window> struct DesignRow {
    Pick<Window> control;
    Pick<Window> container; // null: the window
    double left, top, width, height; // twips
    int text_id = 0; // 0: none
    const char* text = "";
    int tool_tip_id = 0; // 0: none
};

template <class Window> void design(Window& window, std::span<const DesignRow<Window>> rows)
{
    const auto number = [](int id) { return id ? std::to_string(id) : std::string(); };
    for (const DesignRow<Window>& row : rows) {
        Control& control = row.control(window);
        control.Move(row.left, row.top, row.width, row.height);
        if (row.container)
            control.set_container(&row.container(window));
        control.Tag = number(row.text_id);
        control.Caption = row.text;
        control.ToolTipText = number(row.tool_tip_id);
    }
}

} // namespace tessavox
