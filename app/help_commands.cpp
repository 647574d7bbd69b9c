#include "app/help_commands.h"

#include "app/about_box.h"
#include "forms/command_table.h"

namespace tessavox {

namespace {

constexpr const char* help_file = "/tessavox.chm";
constexpr const char* support_address = "mailto:support@tessavox.org";
constexpr const char* home_page = "https://www.tessavox.org/";

using M = MainControls;
using H = HelpCommands;

constexpr CommandRow<H> commands[] = {
    { &M::mnuHelphelp, 1702, "F1", call<&H::mnuHelphelp_Click> },
    { &M::mnuHelpsep1 },
    { &M::mnuHelpEmail, 1703, "", call<&H::mnuHelpEmail_Click> },
    { &M::mnuHelpWebsite, 1705, "", call<&H::mnuHelpWebsite_Click> },
    { &M::mnuHelpsep2 },
    { &M::mnuHelpAbout, 1706, "", call<&H::mnuHelpAbout_Click> },
};

/// Why the desktop opened nothing, by Shell::open's result.
struct ReasonRow {
    int result;
    int text_id;
};

constexpr ReasonRow reasons[]
    = { { 2, 2320 }, { 3, 2321 }, { 5, 2322 }, { 8, 2323 }, { 11, 2324 }, { 26, 2325 },
          { 27, 2326 }, { 28, 2327 }, { 29, 2328 }, { 30, 2329 }, { 31, 2330 }, { 32, 2331 } };
constexpr int unknown_reason = 2332;

int text_of(int result)
{
    for (const ReasonRow& row : reasons) {
        if (row.result == result)
            return row.text_id;
    }
    return unknown_reason;
}

} // namespace

HelpCommands::HelpCommands(Forms& forms, Platform& platform, MainControls& main)
    : m_platform(platform)
    , m_about(std::make_shared<AboutBox>(forms, platform))
{
    add_commands<H>(main, main.mnuHelp, commands, [this]() -> H& { return *this; });
}

HelpCommands::~HelpCommands() = default;

void HelpCommands::mnuHelphelp_Click()
{
    helpdoc(m_platform.app_folder + help_file);
}

void HelpCommands::helpdoc(const std::string& path)
{
    const int result = StartDoc(path);
    if (result < Shell::opened)
        m_platform.message_boxes.show(m_platform.texts.LoadResString(text_of(result)),
            application_title, MessageButtons::ok, MessageIcon::none);
}

int HelpCommands::StartDoc(const std::string& path)
{
    return m_platform.shell.open(path);
}

void HelpCommands::mnuHelpEmail_Click()
{
    m_platform.shell.navigate(support_address);
}

void HelpCommands::mnuHelpWebsite_Click()
{
    m_platform.shell.navigate(home_page);
}

void HelpCommands::mnuHelpAbout_Click()
{
    m_about->Show();
}

void HelpCommands::unload()
{
    m_about->Unload();
}

} // namespace tessavox
