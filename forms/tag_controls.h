// What the three dialogs for speech tags show, by design.
#pragma once

#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/text_box.h"

namespace tessavox {

/// A silence of so many milliseconds.
struct SilenceControls : Form {
    explicit SilenceControls(Forms& forms);

    TextBox Text1{ *this, "Text1" };
    Label SkinLabel2{ *this, "SkinLabel2" };
    Label SkinLabel3{ *this, "SkinLabel3" };
    CommandButton Command1{ *this, "Command1" };
    CommandButton Command2{ *this, "Command2" };
};

/// A choice that can be typed as well: a speed or the name of a voice.
struct ChoiceControls : Form {
    /// `label_id` and `label` are what the box is labelled with.
    ChoiceControls(Forms& forms, const char* name, int label_id, const char* label);

    Label SkinLabel1{ *this, "SkinLabel1" };
    ComboBox Combo1{ *this, "Combo1", ComboBoxStyle::editable };
    CommandButton Command1{ *this, "Command1" };
    CommandButton Command2{ *this, "Command2" };
};

struct SpeedControls : ChoiceControls {
    explicit SpeedControls(Forms& forms);
};

struct VoiceControls : ChoiceControls {
    explicit VoiceControls(Forms& forms);
};

} // namespace tessavox
