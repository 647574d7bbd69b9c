// The icon in the desktop's tray.
#pragma once

namespace tessavox {

class Tray {
public:
    virtual ~Tray() = default;
    /// Whether an icon of ours is there and offers a way back to a hidden window.
    virtual bool has_icon() const = 0;
};

} // namespace tessavox
