#include "platform/controls/buttons.h"

#include "platform/failure.h"

namespace tessavox {

CheckBox::CheckBox(Form& form, std::string name)
    : Control(form, std::move(name), "CheckBox")
    , Value(0, announcer(), [this](int wanted) {
        if (wanted < 0 || wanted > 2)
            throw Failure(this->name() + " can't take the value " + std::to_string(wanted));
        if (Value.store(wanted) && Click)
            Click();
    })
{
}

} // namespace tessavox
