// The program's icon in the tray, the way back to a hidden window.
#pragma once

#include "forms/main_controls.h"
#include "platform/platform.h"

namespace tessavox {

class TrayIcon {
public:
    /// Gives the tray menu the command that it doesn't share with the menu bar.
    TrayIcon(MainControls& main, Platform& platform);

    /// A second install replaces the first.
    void InstallTrayIcon();
    void RemoveTrayIcon();

private:
    void left_button();
    void icon_changed();
    void mnuTrayShowSoftware_Click();

    MainControls& m_main;
    Platform& m_platform;
};

} // namespace tessavox
