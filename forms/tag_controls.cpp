#include "forms/tag_controls.h"

#include "forms/design.h"

namespace tessavox {

namespace {

using S = SilenceControls;
using C = ChoiceControls;

constexpr DesignRow<S> silence_rows[] = {
    { pick<&S::Text1>, nullptr, 1740, 600, 1260, 315 },
    { pick<&S::SkinLabel2>, nullptr, 240, 600, 1440, 315, 2081, "Silence Time" },
    { pick<&S::SkinLabel3>, nullptr, 3120, 600, 1440, 315, 2082, "Milliseconds" },
    { pick<&S::Command1>, nullptr, 900, 1800, 1380, 420, 2086, "OK" },
    { pick<&S::Command2>, nullptr, 2460, 1800, 1380, 420, 2084, "Help" },
};

constexpr DesignRow<C> choice_rows[] = {
    { pick<&C::SkinLabel1>, nullptr, 240, 360, 1620, 315 },
    { pick<&C::Combo1>, nullptr, 1920, 360, 2730, 315 },
    { pick<&C::Command1>, nullptr, 990, 1200, 1380, 420, 2086, "OK" },
    { pick<&C::Command2>, nullptr, 2550, 1200, 1380, 420, 2084, "Help" },
};

constexpr const char* product_title_id = "2205";
constexpr const char* design_caption = "Selection";

} // namespace

SilenceControls::SilenceControls(Forms& forms)
    : Form(forms, "Selectionfrm1", FormKind::dialog, 4680, 2760)
{
    Tag = product_title_id;
    Caption = design_caption;
    design<S>(*this, silence_rows);
}

ChoiceControls::ChoiceControls(Forms& forms, const char* name, int label_id, const char* label)
    : Form(forms, name, FormKind::dialog, 4890, 1995)
{
    Tag = product_title_id;
    Caption = design_caption;
    design<C>(*this, choice_rows);
    SkinLabel1.Tag = std::to_string(label_id);
    SkinLabel1.Caption = label;
}

SpeedControls::SpeedControls(Forms& forms)
    : ChoiceControls(forms, "Selectionfrm", 2080, "Speed")
{
    Combo1.Text = "-1";
}

// The neutral texts have none of number 2087.
VoiceControls::VoiceControls(Forms& forms)
    : ChoiceControls(forms, "SelectionVoice", 2087, "Speaker")
{
    Combo1.Tag = "2085";
    Combo1.Text = "Please select one voice";
}

} // namespace tessavox
