// What the about box shows, by design.
#pragma once

#include "platform/controls/buttons.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"

namespace tessavox {

struct AboutControls : Form {
    explicit AboutControls(Forms& forms);

    Label SkinLabel1{ *this, "SkinLabel1" }; // the version
    CommandButton Command1{ *this, "Command1" };
};

} // namespace tessavox
