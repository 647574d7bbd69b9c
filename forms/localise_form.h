// Gives a window its texts in the user's language.
#pragma once

#include "platform/controls/form.h"
#include "platform/texts.h"

namespace tessavox {

/// Puts a text in the place of each number that the design of the window holds: the window's Tag
/// stands for its caption; a label's, button's or box's Tag for its caption and its ToolTipText for
/// the tool tip; the caption of a menu item for itself; likewise the members of tab strips and tool
/// bars. What has no number, or a number without a text, keeps the text that it has by design.
void LocaliseForm(Form& form, const Texts& texts);

} // namespace tessavox
