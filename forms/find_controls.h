// What the dialog for finding and replacing shows, by design.
#pragma once

#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"

namespace tessavox {

/// The lists of the two boxes stay empty.
struct FindControls : Form {
    explicit FindControls(Forms& forms);

    ComboBox txtFind{ *this, "txtFind", ComboBoxStyle::editable };
    CommandButton cmdFind{ *this, "cmdFind" };
    CommandButton cmdCancel{ *this, "cmdCancel" };
    ComboBox txtReplace{ *this, "txtReplace", ComboBoxStyle::editable };
    CommandButton cmdReplaceAll{ *this, "cmdReplaceAll" };
    CommandButton cmdReplace{ *this, "cmdReplace" };
    Label lblReplace{ *this, "lblReplace" };
    Label lblFind{ *this, "lblFind" };
    CheckBox chkWholeWord{ *this, "chkWholeWord" };
    CheckBox chkMatchCase{ *this, "chkMatchCase" };
};

} // namespace tessavox
