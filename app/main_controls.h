// What the main window shows: its menus, tool bars and status bar.
#pragma once

#include "platform/controls/bars.h"
#include "platform/controls/form.h"
#include "platform/controls/menu_item.h"

namespace tessavox {

/// The controls of frmMain by design. An item without a handler and without items of its own isn't
/// shown; those exist because a reading or a layout enables and disables them already.
struct MainControls : Form {
    explicit MainControls(Forms& forms);

    MenuItem mnuFile{ *this, "mnuFile" };
    MenuItem mnuFileNew{ *this, "mnuFileNew" };
    MenuItem mnuFileBar0{ *this, "mnuFileBar0" };
    MenuItem mnuFileSave{ *this, "mnuFileSave" };
    MenuItem mnuFileSaveAs{ *this, "mnuFileSaveAs" };
    MenuItem mnuFilePrint{ *this, "mnuFilePrint" };
    MenuItem mnuFileBar3{ *this, "mnuFileBar3" };
    MenuItem mnuFileClose{ *this, "mnuFileClose" };
    MenuItem mnuFileExit{ *this, "mnuFileExit" };

    MenuItem mnuCtl{ *this, "mnuCtl" };
    MenuItem mnuCtlSpeak{ *this, "mnuCtlSpeak" };
    MenuItem mnuCtlPause{ *this, "mnuCtlPause" };
    MenuItem mnuCtlStop{ *this, "mnuCtlStop" };
    MenuItem mnuCtlsep4{ *this, "mnuCtlsep4" };
    MenuItem mnuCtlclipboard{ *this, "mnuCtlclipboard" };
    MenuItem mnuCtlSaveClipboardTexttoWav{ *this, "mnuCtlSaveClipboardTexttoWav" };
    MenuItem mnuCtlsep1{ *this, "mnuCtlsep1" };
    MenuItem mnuCtlSpeaktofile{ *this, "mnuCtlSpeaktofile" };
    MenuItem mnuCtlPlay{ *this, "mnuCtlPlay" };

    MenuItem mnuEdit{ *this, "mnuEdit" };
    MenuItem mnuFormat{ *this, "mnuFormat" };
    MenuItem mnuInsert{ *this, "mnuInsert" };
    MenuItem mnuWebsite{ *this, "mnuWebsite" };
    MenuItem mnuWindow{ *this, "mnuWindow" };

    MenuItem mnuPopUp{ *this, "mnuPopUp" };
    MenuItem mnuPopSpeak{ *this, "mnuPopSpeak" };
    MenuItem mnuPopPause{ *this, "mnuPopPause" };
    MenuItem mnuPopStop{ *this, "mnuPopStop" };

    MenuItem Popmenu{ *this, "Popmenu" };
    MenuItem mnuTrayReadClipboard{ *this, "mnuTrayReadClipboard" };
    MenuItem mnuTrayStop{ *this, "mnuTrayStop" };
    MenuItem mnuTrayPause{ *this, "mnuTrayPause" };
    MenuItem mnuTrayClipboardtoWav{ *this, "mnuTrayClipboardtoWav" };
    MenuItem mnuTrayPlayFile{ *this, "mnuTrayPlayFile" };

    ToolBar tbToolBar;
    ToolBar Toolbar2{ *this, "Toolbar2", {} };
    /// Panel 1, key "Text": the line number. 2 and 3: speaker and speed. 4 and 5: date and time.
    StatusBar sbStatusBar;
};

} // namespace tessavox
