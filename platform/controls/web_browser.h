// The place of a web page among the controls of a form.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

class WebBrowser : public Control {
public:
    WebBrowser(Form& form, std::string name)
        : Control(form, std::move(name), "WebBrowser")
    {
    }
};

} // namespace tessavox
