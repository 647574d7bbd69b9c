#include "forms/main_controls.h"

#include <span>

namespace tessavox {

namespace {

constexpr double design_width_twips = 12000;
constexpr double design_height_twips = 8000;
constexpr const char* product_title_id = "2205";

using M = MainControls;

struct MenuRow {
    MenuItem M::*menu;
    int text_id;
    unsigned when;
};

// Their commands are added by whoever carries them out.
constexpr MenuRow menus[] = {
    { &M::mnuFile, 1000, while_idle },
    { &M::mnuCtl, 1101, with_document },
    { &M::mnuEdit, 1201, with_document | while_idle },
    { &M::mnuFormat, 1401, with_document | while_idle },
    { &M::mnuInsert, 1501, with_document | while_idle },
    { &M::mnuWebsite, 1800, with_document | while_idle },
    { &M::mnuWindow, 1601, with_document | while_idle },
    { &M::mnuHelp, 1701, always },
};

/// An item that does what another one does. Without a number it is a separator, without a command
/// it has one of its own.
struct SharedRow {
    MenuItem M::*item;
    int text_id = 0;
    MenuItem M::*command = nullptr;
    unsigned when = always;
};

constexpr SharedRow pop_up_rows[] = {
    { &M::mnuPopCut, 1202, &M::mnuEditCut, with_selection },
    { &M::mnuPopCopy, 1203, &M::mnuEditCopy, with_selection },
    { &M::mnuPopPaste, 1204, &M::mnuEditPaste, with_clipboard_text },
    { &M::mnuPopSep1 },
    { &M::mnuPopFont, 1402, &M::mnuFormatFont },
    { &M::mnuPopSep2 },
    { &M::mnuPopSpeak, 1102, &M::mnuCtlSpeak },
    { &M::mnuPopPause, 1104, &M::mnuCtlPause },
    { &M::mnuPopStop, 1103, &M::mnuCtlStop },
};

constexpr SharedRow tray_rows[] = {
    { &M::mnuTrayShowSoftware, 1901 },
    { &M::mnuTraymenu9 },
    { &M::mnuTrayReadClipboard, 1132, &M::mnuCtlclipboard },
    { &M::mnuTrayStop, 1130, &M::mnuCtlStop },
    { &M::mnuTrayPause, 1131, &M::mnuCtlPause },
    { &M::mnuTraySp1 },
    { &M::mnuTrayClipboardtoWav, 1135, &M::mnuCtlSaveClipboardTexttoWav },
    { &M::mnuTrayPlayFile, 1134, &M::mnuCtlPlay },
    { &M::mnuTraySp2 },
    { &M::mnuTrayHelp, 1710, &M::mnuHelphelp },
    { &M::mnuTrayAbout, 1707, &M::mnuHelpAbout },
    { &M::mnuTraysp3 },
    { &M::mnuTrayExit, 1023, &M::mnuFileExit },
};

struct ToolRow {
    BarMemberDesign button = {}; // without a key: a separator
    MenuItem M::*command = nullptr;
    unsigned when = always;
};

const ToolRow tool_rows[] = {
    { { "New", {}, "1018" }, &M::mnuFileNew },
    { { "Open", {}, "1019" }, &M::mnuFileOpen },
    { { "Save", {}, "1020" }, &M::mnuFileSave, with_document },
    {},
    { { "Print", {}, "1022" }, &M::mnuFilePrint, with_document },
    {},
    { { "Cut", {}, "1207" }, &M::mnuEditCut, with_document | with_selection },
    { { "Copy", {}, "1208" }, &M::mnuEditCopy, with_document | with_selection },
    { { "Paste", {}, "1209" }, &M::mnuEditPaste, with_document | with_clipboard_text },
};

const std::vector<BarMemberDesign> web_buttons = {
    { "Back", {}, "2200" },
    { "Forward", {}, "2201" },
    { "Stop", {}, "2204" },
    {},
    { "Refresh", {}, "2202" },
    { "Search", {}, "2203" },
};

std::vector<BarMemberDesign> tool_buttons()
{
    std::vector<BarMemberDesign> buttons;
    for (const ToolRow& row : tool_rows)
        buttons.push_back(row.button);
    return buttons;
}

std::vector<StatusBar::Panel> status_panels()
{
    using Kind = StatusBar::PanelKind;
    return { { "Text", 5759 }, { "", 4171 }, { "", 4171 }, { "", 1499, Kind::date },
        { "", 1499, Kind::time } };
}

void add_shared_menu(MainControls& main, MenuItem& menu, std::span<const SharedRow> rows)
{
    for (const SharedRow& row : rows) {
        MenuItem& item = main.*row.item;
        item.Caption = row.text_id ? std::to_string(row.text_id) : "-";
        item.set_container(&menu);
        if (row.command)
            item.Click = [&command = main.*row.command] { command.run(); };
        main.add_rule(item.Enabled, row.when);
    }
}

} // namespace

MainControls::MainControls(Forms& forms)
    : Form(forms, "frmMain", FormKind::mdi_parent, design_width_twips, design_height_twips)
    , tbToolBar(*this, "tbToolBar", tool_buttons())
    , Toolbar2(*this, "Toolbar2", web_buttons)
    , sbStatusBar(*this, "sbStatusBar", status_panels())
{
    Tag = product_title_id;
    Toolbar2.Visible = false;
    sbStatusBar.Caption = "Status bar";
    sbStatusBar.Tag = "2313";
    tbToolBar.Caption = "Tool bar";
    Toolbar2.Caption = "Web tool bar";
    add_rule(tbToolBar.Enabled, while_idle);
    add_rule(Toolbar2.Enabled, while_idle);
    add_menus();
    mnuPopUp.Caption = "PopUp";
    mnuPopUp.Visible = false;
    add_shared_menu(*this, mnuPopUp, pop_up_rows);
    Popmenu.Caption = "Traymenu";
    add_shared_menu(*this, Popmenu, tray_rows);
    add_tool_buttons();
}

void MainControls::add_menus()
{
    for (const MenuRow& row : menus) {
        (this->*row.menu).Caption = std::to_string(row.text_id);
        add_rule((this->*row.menu).Enabled, row.when);
    }
}

void MainControls::add_tool_buttons()
{
    int index = 0;
    for (const ToolRow& row : tool_rows)
        add_rule(tbToolBar.button(++index).Enabled, row.when);
    tbToolBar.ButtonClick = [this](int pressed) {
        if (MenuItem M::*const command = tool_rows[pressed - 1].command)
            (this->*command).run();
    };
}

void MainControls::show_tool_buttons()
{
    bool any_since_separator = false;
    int index = 0;
    for (const ToolRow& row : tool_rows) {
        const bool is_separator = !row.command;
        const bool shown = is_separator ? any_since_separator : bool((this->*row.command).Click);
        tbToolBar.button(++index).Visible = shown;
        any_since_separator = !is_separator && (shown || any_since_separator);
    }
}

void MainControls::add_rule(Property<bool>& Enabled, unsigned when)
{
    if (when != always)
        m_rules.push_back({ &Enabled, when });
}

void MainControls::apply(Enablement condition, bool value)
{
    for (const Rule& rule : m_rules) {
        if ((rule.when & condition) != 0)
            *rule.Enabled = value;
    }
}

} // namespace tessavox
