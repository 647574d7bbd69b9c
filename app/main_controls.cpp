#include "app/main_controls.h"

#include "persist/string_table.h"

namespace tessavox {

namespace {

constexpr double design_width_twips = 12000;
constexpr double design_height_twips = 8000;
constexpr int separator = 0;

struct MenuRow {
    MenuItem MainControls::*item;
    MenuItem MainControls::*menu; // null: a menu of the menu bar
    int caption_id;
    const char* shortcut = "";
};

using M = MainControls;
constexpr MenuRow menu_rows[] = {
    { &M::mnuFile, nullptr, 1000 },
    { &M::mnuFileNew, &M::mnuFile, 1001, "Ctrl+N" },
    { &M::mnuFileBar0, &M::mnuFile, separator },
    { &M::mnuFileSave, &M::mnuFile, 1003, "Ctrl+S" },
    { &M::mnuFileSaveAs, &M::mnuFile, 1004 },
    { &M::mnuFilePrint, &M::mnuFile, 1005, "Ctrl+P" },
    { &M::mnuFileBar3, &M::mnuFile, separator },
    { &M::mnuFileClose, &M::mnuFile, 1006 },
    { &M::mnuFileExit, &M::mnuFile, 1007, "Ctrl+Q" },
    { &M::mnuCtl, nullptr, 1101 },
    { &M::mnuCtlSpeak, &M::mnuCtl, 1102, "Ctrl+F5" },
    { &M::mnuCtlPause, &M::mnuCtl, 1104, "Ctrl+F6" },
    { &M::mnuCtlStop, &M::mnuCtl, 1103, "Ctrl+F7" },
    { &M::mnuCtlsep4, &M::mnuCtl, separator },
    { &M::mnuCtlclipboard, &M::mnuCtl, 1105, "Ctrl+F8" },
    { &M::mnuCtlSaveClipboardTexttoWav, &M::mnuCtl, 1108, "Ctrl+F12" },
    { &M::mnuCtlsep1, &M::mnuCtl, separator },
    { &M::mnuCtlSpeaktofile, &M::mnuCtl, 1106 },
    { &M::mnuCtlPlay, &M::mnuCtl, 1107, "Ctrl+F11" },
    { &M::mnuEdit, nullptr, 1201 },
    { &M::mnuFormat, nullptr, 1401 },
    { &M::mnuInsert, nullptr, 1501 },
    { &M::mnuWebsite, nullptr, 1800 },
    { &M::mnuWindow, nullptr, 1601 },
    { &M::mnuPopSpeak, &M::mnuPopUp, 1102 },
    { &M::mnuPopPause, &M::mnuPopUp, 1104 },
    { &M::mnuPopStop, &M::mnuPopUp, 1103 },
    { &M::mnuTrayReadClipboard, &M::Popmenu, 1132 },
    { &M::mnuTrayStop, &M::Popmenu, 1130 },
    { &M::mnuTrayPause, &M::Popmenu, 1131 },
    { &M::mnuTrayClipboardtoWav, &M::Popmenu, 1135 },
    { &M::mnuTrayPlayFile, &M::Popmenu, 1134 },
};

std::vector<StatusBar::Panel> status_panels()
{
    using Kind = StatusBar::PanelKind;
    return { { "Text", 5759 }, { "", 4171 }, { "", 4171 }, { "", 1499, Kind::date },
        { "", 1499, Kind::time } };
}

} // namespace

MainControls::MainControls(Forms& forms)
    : Form(forms, "frmMain", FormKind::mdi_parent, design_width_twips, design_height_twips)
    , tbToolBar(*this, "tbToolBar",
          { { "New", {}, "1018", LoadResString(1018) },
              { "Save", {}, "1020", LoadResString(1020) } })
    , sbStatusBar(*this, "sbStatusBar", status_panels())
{
    Caption = LoadResString(2205);
    mnuPopUp.Caption = "PopUp";
    mnuPopUp.Visible = false;
    Popmenu.Caption = "Traymenu";
    for (const MenuRow& row : menu_rows) {
        MenuItem& item = this->*row.item;
        item.Caption = row.caption_id == separator ? "-" : LoadResString(row.caption_id);
        item.Shortcut = row.shortcut;
        if (row.menu)
            item.set_container(&(this->*row.menu));
    }
    Toolbar2.Visible = false;
}

} // namespace tessavox
