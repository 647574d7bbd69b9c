// A text beside another control.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

class Label : public Control {
public:
    Label(Form& form, std::string name)
        : Control(form, std::move(name), "Label")
    {
    }
};

} // namespace tessavox
