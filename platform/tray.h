// The icon in the desktop's tray.
#pragma once

#include "platform/controls/control.h"

#include <string>

namespace tessavox {

class MenuItem;

class Tray {
public:
    virtual ~Tray() = default;
    /// Puts up the program's icon, as soon as the desktop has a tray: with a tool tip, and with a
    /// menu of the main window that a right click shows at the pointer.
    virtual void add(const std::string& tip, const MenuItem& menu) = 0;
    virtual void remove() = 0;
    /// Whether an icon of ours is there and offers a way back to a hidden window; true also for the
    /// moment after add() in which that isn't known yet.
    virtual bool has_icon() const = 0;

    /// The left button was pressed on the icon.
    Handler left_button;
    /// has_icon() has changed: trays come late, go, and come again, and the icon with them.
    Handler changed;
};

} // namespace tessavox
