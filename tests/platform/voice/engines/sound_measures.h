// Measures of speech that tests compare.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

namespace tessavox::voice::tests {

/// The fundamental frequency in Hz, by autocorrelation of the whole, so that the loud and
/// voiced parts count most. Looks between `lowest` and `highest`.
inline double fundamental(
    std::span<const std::int16_t> samples, int sample_rate, double lowest, double highest)
{
    const auto correlation = [&](std::size_t shift) {
        double sum = 0;
        for (std::size_t n = 0; n + shift < samples.size(); ++n)
            sum += static_cast<double>(samples[n]) * samples[n + shift];
        return sum;
    };
    const auto longest = static_cast<std::size_t>(sample_rate / lowest);
    std::pair<double, std::size_t> best;
    for (auto shift = static_cast<std::size_t>(sample_rate / highest); shift <= longest; ++shift)
        best = std::max(best, { correlation(shift), shift });
    return best.second == 0 ? 0 : sample_rate / static_cast<double>(best.second);
}

/// The root of the mean square of the samples.
inline double loudness(std::span<const std::int16_t> samples)
{
    double sum = 0;
    for (const std::int16_t sample : samples)
        sum += static_cast<double>(sample) * sample;
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
}

} // namespace tessavox::voice::tests
