#include "forms/dock_controls.h"

#include "forms/design.h"

namespace tessavox {

namespace {

using D = DockControls;

constexpr DesignRow<D> design_rows[] = {
    { pick<&D::ReadClipbdBtn>, nullptr, 0, 0, 1215, 350, 1132, "Read Clipboard" },
    { pick<&D::StopBtn>, nullptr, 1320, 0, 645, 350, 1130, "Stop" },
    { pick<&D::PauseBtn>, nullptr, 2040, 0, 645, 350, 1131, "Pause" },
    { pick<&D::SpeaktofileBtn>, nullptr, 2760, 0, 2085, 350, 1133, "Read to File" },
    { pick<&D::Play>, nullptr, 4920, 0, 765, 350, 1134, "Play File" },
    { pick<&D::Command4>, nullptr, 5880, 0, 1215, 375, 1901, "Show Software" },
    { pick<&D::PauseBtn1>, nullptr, 2040, 0, 645, 350 },
    { pick<&D::hscrollSnapDistance>, nullptr, 1200, 1440, 1095, 255 },
    { pick<&D::lblSnapDistance>, nullptr, 2400, 1440, 1095, 255 },
};

} // namespace

DockControls::DockControls(Forms& forms)
    : Form(forms, "frmDockDemo", FormKind::tool_window, 7305, 315)
{
    Tag = "2205";
    design<D>(*this, design_rows);
    hscrollSnapDistance.Value = 3;
    StopBtn.Enabled = false;
    PauseBtn.Enabled = false;
    PauseBtn1.Visible = false;
}

} // namespace tessavox
