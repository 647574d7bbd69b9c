// What concerns the screen as a whole.
#pragma once

#include <cstdint>

namespace tessavox {

enum class MousePointer { normal = 0, hourglass = 11 };

/// Pixels; right and bottom lie just outside.
struct PixelEdges {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Right = 0;
    std::int32_t Bottom = 0;
};

class Screen {
public:
    virtual ~Screen() = default;
    /// The hourglass is seen while the handler runs that asks for it; it doesn't outlive the act.
    virtual void set_MousePointer(MousePointer pointer) = 0;
    /// Twips.
    virtual double Width() const = 0;
    virtual double Height() const = 0;
    virtual double TwipsPerPixelX() const = 0;
    virtual double TwipsPerPixelY() const = 0;
    /// What panels leave free of the screen on which the pointer is.
    virtual PixelEdges work_area() const = 0;
};

} // namespace tessavox
