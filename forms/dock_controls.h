// What the dock bar shows, by design: the small bar that stands in for the main window while the
// user works in other programs.
#pragma once

#include "platform/controls/buttons.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/scroll_bar.h"

namespace tessavox {

/// The controls of frmDockDemo.
struct DockControls : Form {
    explicit DockControls(Forms& forms);

    CommandButton ReadClipbdBtn{ *this, "ReadClipbdBtn" };
    CommandButton StopBtn{ *this, "StopBtn" };
    CommandButton PauseBtn{ *this, "PauseBtn" };
    CommandButton SpeaktofileBtn{ *this, "SpeaktofileBtn" };
    CommandButton Play{ *this, "Play" };
    CommandButton Command4{ *this, "Command4" }; // back to the main window
    CommandButton PauseBtn1{ *this, "PauseBtn1" }; // covered by PauseBtn, without use
    // Below the edge of the bar: how near the edges of the screen take hold of it, in pixels.
    ScrollBar hscrollSnapDistance{ *this, "hscrollSnapDistance", { 3, 30, 1, 5 } };
    Label lblSnapDistance{ *this, "lblSnapDistance" };
};

} // namespace tessavox
