// Whether it is safe to ask for the clipboard.
#pragma once

namespace tessavox {

/// An owner that hangs makes a plain request wait for many seconds. This asks it for no more than
/// the list of its formats and waits a short while. True where there is no way to find out.
bool clipboard_owner_answers();

} // namespace tessavox
