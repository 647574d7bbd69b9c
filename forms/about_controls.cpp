#include "forms/about_controls.h"

#include "forms/design.h"

namespace tessavox {

namespace {

using A = AboutControls;

constexpr DesignRow<A> design_rows[] = {
    { pick<&A::SkinLabel1>, nullptr, 360, 360, 3480, 300, 2013, "Version:3.5.1" },
    { pick<&A::Command1>, nullptr, 1400, 960, 1400, 420, 2014, "&Close" },
};

} // namespace

AboutControls::AboutControls(Forms& forms)
    : Form(forms, "AboutBox", FormKind::dialog, 4200, 1640)
{
    Tag = "2205";
    design<A>(*this, design_rows);
}

} // namespace tessavox
