// An item of a menu, or a menu itself.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

class MenuItem : public Control {
public:
    MenuItem(Form& form, std::string name)
        : Control(form, std::move(name), "Menu")
    {
    }
    /// Such as "Ctrl+F5"; empty if none. A caption of "-" makes a separator. The container is the
    /// menu that it stands in, or null for a menu of the menu bar.
    std::string Shortcut;
    Handler Click;

    void user_choose()
    {
        if (Enabled)
            run();
    }
    /// Does what the item stands for, enabled or not.
    void run()
    {
        if (Click)
            Click();
    }
};

} // namespace tessavox
