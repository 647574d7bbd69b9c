#include "platform/qt/colours.h"

#include <algorithm>
#include <cmath>

namespace tessavox {
namespace {

/// Of a colour of the sRGB space.
double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

} // namespace

QColor mixed(const QColor& one, const QColor& other, double share)
{
    const auto mix = [share](int a, int b) {
        return static_cast<int>(std::lround(a * share + b * (1 - share)));
    };
    return { mix(one.red(), other.red()), mix(one.green(), other.green()),
        mix(one.blue(), other.blue()) };
}

double contrast(const QColor& one, const QColor& other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

bool is_dark(const QColor& ground)
{
    return contrast(ground, Qt::white) > contrast(ground, Qt::black);
}

QColor legible(const QColor& ink, const QColor& ground)
{
    constexpr double step = 0.05;
    const QColor end = is_dark(ground) ? Qt::white : Qt::black;
    for (double share = 0; share < 1; share += step) {
        const QColor nearer = mixed(end, ink, share);
        if (contrast(nearer, ground) >= contrast_of_text)
            return nearer;
    }
    return end;
}

} // namespace tessavox
