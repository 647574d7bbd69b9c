#include "forms/main_controls.h"

#include <iterator>

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
};

/// An item that does what another one does.
struct SharedRow {
    MenuItem M::*item;
    MenuItem M::*menu;
    int text_id;
    MenuItem M::*command;
};

constexpr SharedRow shared_rows[] = {
    { &M::mnuPopSpeak, &M::mnuPopUp, 1102, &M::mnuCtlSpeak },
    { &M::mnuPopPause, &M::mnuPopUp, 1104, &M::mnuCtlPause },
    { &M::mnuPopStop, &M::mnuPopUp, 1103, &M::mnuCtlStop },
    { &M::mnuTrayReadClipboard, &M::Popmenu, 1132, &M::mnuCtlclipboard },
    { &M::mnuTrayStop, &M::Popmenu, 1130, &M::mnuCtlStop },
    { &M::mnuTrayPause, &M::Popmenu, 1131, &M::mnuCtlPause },
    { &M::mnuTrayClipboardtoWav, &M::Popmenu, 1135, &M::mnuCtlSaveClipboardTexttoWav },
    { &M::mnuTrayPlayFile, &M::Popmenu, 1134, &M::mnuCtlPlay },
};

struct ToolRow {
    BarMemberDesign button;
    MenuItem M::*command;
    unsigned when;
};

const ToolRow tool_rows[] = {
    { { "New", {}, "1018" }, &M::mnuFileNew, always },
    { { "Save", {}, "1020" }, &M::mnuFileSave, with_document },
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

} // namespace

MainControls::MainControls(Forms& forms)
    : Form(forms, "frmMain", FormKind::mdi_parent, design_width_twips, design_height_twips)
    , tbToolBar(*this, "tbToolBar", tool_buttons())
    , sbStatusBar(*this, "sbStatusBar", status_panels())
{
    Tag = product_title_id;
    Toolbar2.Visible = false;
    sbStatusBar.Caption = "Status bar";
    sbStatusBar.Tag = "2313";
    tbToolBar.Caption = "Tool bar";
    add_rule(tbToolBar.Enabled, while_idle);
    add_rule(Toolbar2.Enabled, while_idle);
    add_menus();
    add_shared_menus();
    add_tool_buttons();
}

void MainControls::add_menus()
{
    for (const MenuRow& row : menus) {
        (this->*row.menu).Caption = std::to_string(row.text_id);
        add_rule((this->*row.menu).Enabled, row.when);
    }
}

void MainControls::add_shared_menus()
{
    mnuPopUp.Caption = "PopUp";
    mnuPopUp.Visible = false;
    Popmenu.Caption = "Traymenu";
    for (const SharedRow& row : shared_rows) {
        MenuItem& item = this->*row.item;
        MenuItem& command = this->*row.command;
        item.Caption = std::to_string(row.text_id);
        item.set_container(&(this->*row.menu));
        item.Click = [&command] { command.run(); };
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
