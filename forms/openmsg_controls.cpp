#include "forms/openmsg_controls.h"

#include "forms/design.h"

namespace tessavox {

namespace {

using O = OpenmsgControls;

constexpr DesignRow<O> design_rows[] = {
    { pick<&O::Label1>, nullptr, 240, 240, 4220, 300, 2070, "Tessavox has been opened." },
    { pick<&O::Command1>, nullptr, 240, 840, 1400, 420, 2071, "Close" },
    { pick<&O::Command2>, nullptr, 1800, 840, 2660, 420, 2072, "Open a new window >>>" },
};

} // namespace

OpenmsgControls::OpenmsgControls(Forms& forms)
    : Form(forms, "openmsg", FormKind::dialog, 4700, 1500)
{
    Tag = "2205";
    design<O>(*this, design_rows);
}

} // namespace tessavox
