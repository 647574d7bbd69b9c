// The one place where twips become pixels.
#pragma once

#include <QRect>

#include <cmath>

namespace tessavox {

/// 1440 twips an inch at 96 logical pixels an inch; the display's scaling is Qt's own affair.
constexpr double twips_per_pixel = 15;

inline int to_pixels(double twips)
{
    return static_cast<int>(std::lround(twips / twips_per_pixel));
}

inline double to_twips(int pixels)
{
    return pixels * twips_per_pixel;
}

/// Both edges are rounded, so that neighbours neither overlap nor leave a gap.
inline QRect to_pixels(double left, double top, double width, double height)
{
    const int x = to_pixels(left);
    const int y = to_pixels(top);
    return { x, y, to_pixels(left + width) - x, to_pixels(top + height) - y };
}

} // namespace tessavox
