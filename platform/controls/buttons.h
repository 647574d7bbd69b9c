// Controls that are pressed.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

class CommandButton : public Control {
public:
    CommandButton(Form& form, std::string name)
        : Control(form, std::move(name), "CommandButton")
    {
    }
    Handler Click;

    /// The user pressed it. A disabled button has no effect.
    void user_press()
    {
        if (Enabled && Click)
            Click();
    }
};

class CheckBox : public Control {
public:
    CheckBox(Form& form, std::string name);
    /// 0 clear, 1 ticked, 2 grey. A change runs Click, whoever makes it; the same value again does
    /// not. @throws Failure for any other value.
    Property<int> Value;
    Handler Click;

    void user_toggle() { Value = Value == 1 ? 0 : 1; }
};

} // namespace tessavox
