// What concerns the screen as a whole.
#pragma once

namespace tessavox {

enum class MousePointer { normal = 0, hourglass = 11 };

class Screen {
public:
    virtual ~Screen() = default;
    virtual void set_MousePointer(MousePointer pointer) = 0;
};

} // namespace tessavox
