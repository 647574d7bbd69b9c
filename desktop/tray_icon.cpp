#include "desktop/tray_icon.h"

#include "platform/failure.h"

namespace tessavox {

TrayIcon::TrayIcon(MainControls& main, Platform& platform)
    : m_main(main)
    , m_platform(platform)
{
    main.mnuTrayShowSoftware.Click = [this] { mnuTrayShowSoftware_Click(); };
}

void TrayIcon::InstallTrayIcon()
{
    RemoveTrayIcon();
    attempt([&] {
        Tray& tray = m_platform.tray;
        tray.left_button = [this] { left_button(); };
        tray.changed = [this] { icon_changed(); };
        tray.add(m_platform.texts.LoadResString(2000), m_main.Popmenu);
    });
}

void TrayIcon::RemoveTrayIcon()
{
    m_platform.tray.left_button = nullptr;
    m_platform.tray.changed = nullptr;
    m_platform.tray.remove();
}

// A left click brings the window up and opens the menu as well.
void TrayIcon::left_button()
{
    attempt_each([&] { m_main.Show(); }, [&] { m_main.window_state = WindowState::normal; },
        [&] { m_main.window().PopupMenu(m_main.Popmenu); });
}

// A minimised window hides as soon as there is an icon that leads back to it, and is in the task
// bar again when that has gone.
void TrayIcon::icon_changed()
{
    if (m_main.is_loaded() && m_main.window_state == WindowState::minimised)
        m_main.Visible = !m_platform.tray.has_icon();
}

void TrayIcon::mnuTrayShowSoftware_Click()
{
    m_main.mnuTrayStop.run();
    attempt_each([&] { m_main.window_state = WindowState::normal; }, [&] { m_main.Show(); });
}

} // namespace tessavox
