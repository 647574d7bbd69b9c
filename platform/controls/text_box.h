// A line of text that users can change.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

class TextBox : public Control {
public:
    TextBox(Form& form, std::string name)
        : Control(form, std::move(name), "TextBox")
        , Text({}, announcer())
    {
    }
    Property<std::string> Text;

    void user_edit(std::string text) { Text = std::move(text); }
};

} // namespace tessavox
