// Keys that reach the program wherever the keyboard focus is, as the desktop lets them be had.
#pragma once

#include "platform/controls/form.h"
#include "platform/hot_keys.h"

#include <memory>

namespace tessavox {

/// In a Wayland session the desktop gives them, if it has something for that, once it has answered;
/// else the X server. In a session with neither none can be had. `post` runs a call of `pressed` in
/// the message loop, and not while a command blocks the program.
std::unique_ptr<HotKeys> make_hot_keys(Forms::Post post);

} // namespace tessavox
