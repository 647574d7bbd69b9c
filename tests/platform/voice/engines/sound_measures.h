// Measures of speech that tests compare.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace tessavox::voice::tests {

/// The median fundamental frequency of the voiced parts in Hz, by normalised autocorrelation over
/// frames of 30 ms. Looks between `lowest` and `highest`. 0 if nothing is voiced.
inline double fundamental(
    std::span<const std::int16_t> samples, int sample_rate, double lowest, double highest)
{
    const auto window = static_cast<std::size_t>(sample_rate) * 30 / 1000;
    const auto shortest = static_cast<std::size_t>(sample_rate / highest);
    const auto longest = static_cast<std::size_t>(sample_rate / lowest);
    std::vector<double> found;
    for (std::size_t at = 0; at + window + longest < samples.size(); at += 4 * window) {
        const auto energy = [&](std::size_t shift) {
            double sum = 1;
            for (std::size_t n = 0; n < window; ++n)
                sum += static_cast<double>(samples[at + shift + n]) * samples[at + shift + n];
            return sum;
        };
        const double base = energy(0);
        if (base / static_cast<double>(window) < 1e5)
            continue;
        double best = 0;
        std::size_t best_shift = 0;
        for (std::size_t shift = shortest; shift <= longest; ++shift) {
            double product = 0;
            for (std::size_t n = 0; n < window; ++n)
                product += static_cast<double>(samples[at + n]) * samples[at + shift + n];
            product /= std::sqrt(base * energy(shift));
            // A longer period must be clearly better: its multiples fit as well.
            if (product > best + 0.02) {
                best = product;
                best_shift = shift;
            }
        }
        if (best > 0.75)
            found.push_back(sample_rate / static_cast<double>(best_shift));
    }
    if (found.empty())
        return 0;
    std::ranges::nth_element(found, found.begin() + static_cast<std::ptrdiff_t>(found.size() / 2));
    return found[found.size() / 2];
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
