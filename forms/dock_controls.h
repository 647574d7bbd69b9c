// What the dock bar shows, by design: the small bar that stands in for the main window while the
// user works in other programs.
#pragma once

#include "platform/controls/buttons.h"
#include "platform/controls/form.h"

namespace tessavox {

/// The controls of frmDockDemo. Never shown yet: they hold what a reading enables and disables.
struct DockControls : Form {
    explicit DockControls(Forms& forms)
        : Form(forms, "frmDockDemo", FormKind::dialog, 7305, 315)
    {
        StopBtn.Enabled = false;
        PauseBtn.Enabled = false;
    }

    CommandButton ReadClipbdBtn{ *this, "ReadClipbdBtn" };
    CommandButton StopBtn{ *this, "StopBtn" };
    CommandButton PauseBtn{ *this, "PauseBtn" };
    CommandButton SpeaktofileBtn{ *this, "SpeaktofileBtn" };
    CommandButton Play{ *this, "Play" };
};

} // namespace tessavox
