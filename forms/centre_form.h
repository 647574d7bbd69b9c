// Puts a window in the middle of the screen.
#pragma once

#include "platform/controls/form.h"
#include "platform/screen.h"

namespace tessavox {

/// One that is larger than the screen gets a negative place.
inline void CentreForm(Form& form, const Screen& screen)
{
    form.Left = (screen.Width() - form.Width) / 2;
    form.Top = (screen.Height() - form.Height) / 2;
}

} // namespace tessavox
