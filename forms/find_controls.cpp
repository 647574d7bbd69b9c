#include "forms/find_controls.h"

#include "forms/design.h"

namespace tessavox {

namespace {

using F = FindControls;

constexpr DesignRow<F> design_rows[] = {
    { pick<&F::txtFind>, nullptr, 1320, 120, 2400, 315 },
    { pick<&F::cmdFind>, nullptr, 3840, 120, 1470, 400, 2060, "&Find" },
    { pick<&F::cmdCancel>, nullptr, 3840, 1590, 1470, 400, 2066, "&Cancel" },
    { pick<&F::txtReplace>, nullptr, 1320, 610, 2400, 315 },
    { pick<&F::cmdReplaceAll>, nullptr, 3840, 1100, 1470, 400, 2062, "Replace &All" },
    { pick<&F::cmdReplace>, nullptr, 3840, 610, 1470, 400, 2061, "&Replace.." },
    { pick<&F::lblReplace>, nullptr, 120, 610, 1170, 315, 2063, "Replace with" },
    { pick<&F::lblFind>, nullptr, 120, 120, 1170, 315, 2067, "Find" },
    { pick<&F::chkWholeWord>, nullptr, 120, 1160, 3600, 315, 2064, "Find Whole Word Only" },
    { pick<&F::chkMatchCase>, nullptr, 120, 1590, 3600, 315, 2065, "Match Case" },
};

} // namespace

FindControls::FindControls(Forms& forms)
    : Form(forms, "frmFind", FormKind::dialog, 5430, 2115)
{
    Tag = "2205";
    design<F>(*this, design_rows);
}

} // namespace tessavox
