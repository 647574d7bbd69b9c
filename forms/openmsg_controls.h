// What the question shows, by design, that a start asks while a copy of the program runs.
#pragma once

#include "platform/controls/buttons.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"

namespace tessavox {

struct OpenmsgControls : Form {
    explicit OpenmsgControls(Forms& forms);

    Label Label1{ *this, "Label1" };
    CommandButton Command1{ *this, "Command1" }; // closes it, and with it this copy
    CommandButton Command2{ *this, "Command2" }; // a second application beside the first
};

} // namespace tessavox
