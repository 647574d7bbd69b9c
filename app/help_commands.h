// The Help menu: the help, mail and website by the desktop's own programs, and the about box.
#pragma once

#include "forms/main_controls.h"
#include "platform/platform.h"

#include <memory>
#include <string>

namespace tessavox {

class AboutBox;

class HelpCommands {
public:
    /// Adds its commands to the Help menu.
    HelpCommands(Forms& forms, Platform& platform, MainControls& main);
    ~HelpCommands();

    void mnuHelphelp_Click();
    void mnuHelpEmail_Click();
    void mnuHelpWebsite_Click();
    void mnuHelpAbout_Click();
    /// Has the desktop open a file. The result is Shell::open's.
    int StartDoc(const std::string& path);
    /// The same, and says in a message box if it can't.
    void helpdoc(const std::string& path);
    /// The main window goes, and these with it.
    void unload();

private:
    Platform& m_platform;
    std::shared_ptr<AboutBox> m_about;
};

} // namespace tessavox
