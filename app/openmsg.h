// Asks what to do when a copy of the program runs already.
#pragma once

#include "platform/controls/buttons.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"

namespace tessavox {

class frmMain;

class openmsg : public Form {
public:
    openmsg(Forms& forms, frmMain& main);

    Label Label1{ *this, "Label1" };
    CommandButton Command1{ *this, "Command1" }; // closes it, and with it this copy
    CommandButton Command2{ *this, "Command2" }; // a second application beside the first
};

} // namespace tessavox
