// The small bar that stands in for the main window while the user works in other programs.
#pragma once

#include "desktop/docking_handler.h"
#include "forms/dock_controls.h"
#include "forms/main_controls.h"
#include "platform/platform.h"

#include <functional>
#include <optional>

namespace tessavox {

class DocumentSpeech;

/// It has no speech of its own: its buttons do what those of the active document and the commands
/// of the main window do, and a reading enables them in step with those. Main window and bar take
/// each other's place; a minimised bar leaves only the tray icon.
class frmDockDemo : public DockControls {
public:
    /// `active` gives the speech of the active document and throws Failure where there is none.
    frmDockDemo(Forms& forms, Platform& platform, MainControls& main,
        std::function<DocumentSpeech&()> active);
    /// Goes without bringing the main window back, as that goes too.
    void UnloadWithMain();

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_MouseDown(int button, float x, float y) override;
    void Form_MouseMove(int buttons, float x, float y) override;
    void Form_Unload(bool& Cancel) override;

private:
    clsDockingHandler& dockHandler();
    void hscrollSnapDistance_Change();

    Platform& m_platform;
    MainControls& m_main;
    bool m_main_goes = false;
    std::optional<clsDockingHandler> m_dockHandler; // made on first use
};

} // namespace tessavox
