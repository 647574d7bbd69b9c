// What the main window shows, by design: its menus, tool bars and status bar.
#pragma once

#include "platform/controls/bars.h"
#include "platform/controls/form.h"
#include "platform/controls/menu_item.h"
#include "platform/controls/timer.h"

#include <vector>

namespace tessavox {

/// What has to be so for a command to be enabled; bits.
enum Enablement : unsigned {
    always = 0,
    with_document = 1, // at least one document is open
    while_idle = 2, // the active document isn't being read
    with_selection = 4, // some of its text is selected
    with_clipboard_text = 8,
};

/// The controls of frmMain. An item without a handler and without items of its own isn't shown;
/// those exist because a reading or a layout enables and disables them already.
struct MainControls : Form {
    explicit MainControls(Forms& forms);

    // In the order in which they stand in the menus.
    MenuItem mnuFile{ *this, "mnuFile" };
    MenuItem mnuFileNew{ *this, "mnuFileNew" };
    MenuItem mnuFileOpen{ *this, "mnuFileOpen" };
    MenuItem mnuFileBar0{ *this, "mnuFileBar0" };
    MenuItem mnuFileSave{ *this, "mnuFileSave" };
    MenuItem mnuFileSaveAs{ *this, "mnuFileSaveAs" };
    MenuItem mnuFileBar1{ *this, "mnuFileBar1" };
    MenuItem mnuFilePrint{ *this, "mnuFilePrint" };
    MenuItem mnuFileBar3{ *this, "mnuFileBar3" };
    MenuItem mnuFileClose{ *this, "mnuFileClose" };
    MenuItem mnuFileExit{ *this, "mnuFileExit" };
    MenuItem mnuFileExit2{ *this, "mnuFileExit2" };

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
    MenuItem mnuCtlFile2{ *this, "mnuCtlFile2" };

    MenuItem mnuEdit{ *this, "mnuEdit" };
    MenuItem mnuEditCut{ *this, "mnuEditCut" };
    MenuItem mnuEditCopy{ *this, "mnuEditCopy" };
    MenuItem mnuEditPaste{ *this, "mnuEditPaste" };
    MenuItem mnuEditSelectAll{ *this, "mnuEditSelectAll" };
    MenuItem mnuEditBar2{ *this, "mnuEditBar2" };
    MenuItem mnuEditFind{ *this, "mnuEditFind" };

    MenuItem mnuFormat{ *this, "mnuFormat" };
    MenuItem mnuFormatFont{ *this, "mnuFormatFont" };
    MenuItem mnuFormatSep1{ *this, "mnuFormatSep1" };
    MenuItem mnuFormatBullets{ *this, "mnuFormatBullets" };
    MenuItem mnuFormatChangeCase{ *this, "mnuFormatChangeCase" };
    MenuItem mnuFormatCSLower{ *this, "mnuFormatCSLower" };
    MenuItem mnuFormatCSUpper{ *this, "mnuFormatCSUpper" };
    MenuItem mnuFormatCSSC{ *this, "mnuFormatCSSC" };
    MenuItem mnuFormatScript{ *this, "mnuFormatScript" };
    MenuItem mnuFormatSubScript{ *this, "mnuFormatSubScript" };
    MenuItem mnuFormatSuperScript{ *this, "mnuFormatSuperScript" };
    MenuItem mnuFormatNoScript{ *this, "mnuFormatNoScript" };

    MenuItem mnuInsert{ *this, "mnuInsert" };
    MenuItem mnuInsertMaleReader{ *this, "mnuInsertMaleReader" };
    MenuItem mnuInsertSpeed{ *this, "mnuInsertSpeed" };
    MenuItem mnuInsertSpell{ *this, "mnuInsertSpell" };
    MenuItem menuInsertSep{ *this, "menuInsertSep" };
    MenuItem menuInsertSlience{ *this, "menuInsertSlience" };

    MenuItem mnuWebsite{ *this, "mnuWebsite" };
    MenuItem munTIME{ *this, "munTIME" };
    MenuItem mnuESPN{ *this, "mnuESPN" };
    MenuItem mnuCNET{ *this, "mnuCNET" };
    MenuItem mnuABC{ *this, "mnuABC" };
    MenuItem mnuReuters{ *this, "mnuReuters" };
    MenuItem mnuMSNBC{ *this, "mnuMSNBC" };
    MenuItem mnuYahoo{ *this, "mnuYahoo" };
    MenuItem mnuBBC{ *this, "mnuBBC" };
    MenuItem mnuCNN{ *this, "mnuCNN" };
    MenuItem mnuVOA{ *this, "mnuVOA" };
    MenuItem munGoogle{ *this, "munGoogle" };

    MenuItem mnuWindow{ *this, "mnuWindow" };
    MenuItem mnuWindowNewWindow{ *this, "mnuWindowNewWindow" };
    MenuItem mnuWindowBar0{ *this, "mnuWindowBar0" };
    MenuItem mnuWindowCascade{ *this, "mnuWindowCascade" };
    MenuItem mnuWindowTileHorizontal{ *this, "mnuWindowTileHorizontal" };
    MenuItem mnuWindowTileVertical{ *this, "mnuWindowTileVertical" };
    MenuItem mnuWindowArrangeIcons{ *this, "mnuWindowArrangeIcons" };

    MenuItem mnuHelp{ *this, "mnuHelp" };
    MenuItem mnuHelphelp{ *this, "mnuHelphelp" };
    MenuItem mnuHelpsep1{ *this, "mnuHelpsep1" };
    MenuItem mnuHelpEmail{ *this, "mnuHelpEmail" };
    MenuItem mnuHelpWebsite{ *this, "mnuHelpWebsite" };
    MenuItem mnuHelpsep2{ *this, "mnuHelpsep2" };
    MenuItem mnuHelpAbout{ *this, "mnuHelpAbout" };

    MenuItem mnuPopUp{ *this, "mnuPopUp" };
    MenuItem mnuPopCut{ *this, "mnuPopCut" };
    MenuItem mnuPopCopy{ *this, "mnuPopCopy" };
    MenuItem mnuPopPaste{ *this, "mnuPopPaste" };
    MenuItem mnuPopSep1{ *this, "mnuPopSep1" };
    MenuItem mnuPopFont{ *this, "mnuPopFont" };
    MenuItem mnuPopSep2{ *this, "mnuPopSep2" };
    MenuItem mnuPopSpeak{ *this, "mnuPopSpeak" };
    MenuItem mnuPopPause{ *this, "mnuPopPause" };
    MenuItem mnuPopStop{ *this, "mnuPopStop" };

    MenuItem Popmenu{ *this, "Popmenu" };
    MenuItem mnuTrayShowSoftware{ *this, "mnuTrayShowSoftware" };
    MenuItem mnuTraymenu9{ *this, "mnuTraymenu9" };
    MenuItem mnuTrayReadClipboard{ *this, "mnuTrayReadClipboard" };
    MenuItem mnuTrayStop{ *this, "mnuTrayStop" };
    MenuItem mnuTrayPause{ *this, "mnuTrayPause" };
    MenuItem mnuTraySp1{ *this, "mnuTraySp1" };
    MenuItem mnuTrayClipboardtoWav{ *this, "mnuTrayClipboardtoWav" };
    MenuItem mnuTrayPlayFile{ *this, "mnuTrayPlayFile" };
    MenuItem mnuTraySp2{ *this, "mnuTraySp2" };
    MenuItem mnuTrayHelp{ *this, "mnuTrayHelp" };
    MenuItem mnuTrayAbout{ *this, "mnuTrayAbout" };
    MenuItem mnuTraysp3{ *this, "mnuTraysp3" };
    MenuItem mnuTrayExit{ *this, "mnuTrayExit" };

    ToolBar tbToolBar;
    ToolBar Toolbar2;
    /// Panel 1, key "Text": the line number. 2 and 3: speaker and speed. 4 and 5: date and time.
    StatusBar sbStatusBar;

    Timer Timer1{ *this, "Timer1", 2 };
    Timer Timer2{ *this, "Timer2", 1000 };

    /// `Enabled` follows the conditions from now on, as often as setmenu asks.
    void add_rule(Property<bool>& Enabled, unsigned when);
    /// Shows the tool buttons whose commands have been added, and separators between them.
    void show_tool_buttons();
    /// Writes `value` where the condition counts.
    void apply(Enablement condition, bool value);

private:
    struct Rule {
        Property<bool>* Enabled;
        unsigned when;
    };
    void add_menus();
    void add_tool_buttons();

    std::vector<Rule> m_rules;
};

} // namespace tessavox
