// What concerns the screen as a whole.
#pragma once

namespace tessavox {

enum class MousePointer { normal = 0, hourglass = 11 };

class Screen {
public:
    virtual ~Screen() = default;
    /// The hourglass is seen while the handler runs that asks for it; it doesn't outlive the act.
    virtual void set_MousePointer(MousePointer pointer) = 0;
};

} // namespace tessavox
