// Commands: what users can have done, one row each. The menu item of a command is its name: tool
// bars, pop-up menus, hot keys and the dock bar point at it.
#pragma once

#include "forms/main_controls.h"
#include "platform/controls/pick.h"
#include "platform/failure.h"

#include <functional>
#include <span>
#include <string>

namespace tessavox {

/// A row without a text is a separator, one without `run` a menu that holds the rows after it.
template <class Target> struct CommandRow {
    MenuItem MainControls::*item;
    int text_id = 0;
    const char* shortcut = "";
    void (*run)(Target&) = nullptr;
    unsigned when = always; // Enablement bits
};

/// For a row whose command is one function of its target.
template <auto Function> void call(typename OwnerOf<decltype(Function)>::type& target)
{
    (target.*Function)();
}

/// Puts the commands under `menu`, in the order of the rows. `target` is asked for at each run;
/// where it fails, or the command does, nothing more happens.
template <class Target>
void add_commands(MainControls& main, MenuItem& menu, std::span<const CommandRow<Target>> rows,
    const std::function<Target&()>& target)
{
    for (const CommandRow<Target>& row : rows) {
        MenuItem& item = main.*row.item;
        item.Caption = row.text_id ? std::to_string(row.text_id) : "-";
        item.Shortcut = row.shortcut;
        if (&item != &menu)
            item.set_container(&menu);
        if (row.run)
            item.Click = [run = row.run, target] { attempt([&] { run(target()); }); };
        main.add_rule(item.Enabled, row.when);
    }
}

} // namespace tessavox
