// The commands that have a number: the keys that work wherever the focus is.
#pragma once

#include "forms/main_controls.h"
#include "platform/platform.h"

#include <cstdint>
#include <functional>

namespace tessavox {

class frmDocument;

/// What the numbered commands act on.
struct CommandTarget {
    MainControls& main;
    Platform& platform;
    /// The active document. Throws Failure if there is none.
    std::function<frmDocument&()> ActiveForm;
};

/// Lets waiting messages run, then does the command: 0 read, 1 pause or resume, 2 stop, 3 read the
/// clipboard, 4 faster, 5 slower, 6 hide or show the main window, 8 play a file, 9 write the
/// clipboard into one. There is no 7, and other numbers do nothing. @throws Failure if the command
/// does, or if it needs a document and there is none.
void DoFunctions(const CommandTarget& target, std::uint8_t command);

} // namespace tessavox
