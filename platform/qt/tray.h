// The icon in the desktop's tray.
#pragma once

#include "platform/tray.h"

namespace tessavox {

class QtTray : public Tray {
public:
    bool has_icon() const override { return false; }
};

} // namespace tessavox
