// The quick way from a speech engine's rate up to that of a sound card.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessavox::voice {

/// Raises the rate of a mono stream in two steps: a half-band filter doubles it, and a short filter
/// with a set of coefficients for each phase goes from there to any higher or lower rate. Rejects
/// images by more than 95 dB, up to 90 % of the bandwidth; above that they fade in as the band
/// ends.
///
/// Both are windowed sinc filters after J. F. Kaiser, "Nonrecursive digital filter design using the
/// I0-sinh window function" (1974). A general resampler needs three times as long for this, which
/// is the most costly thing beside the engine itself when a long text goes into a file.
class Interpolator {
public:
    /// Whether it can do it: the output's band must be clearly wider, the ratio simple.
    static bool suits(int from_rate, int to_rate);

    /// `portable` keeps to what every processor has. @throws Failure if it does not suit.
    Interpolator(int from_rate, int to_rate, bool portable = false);

    /// Appends what is ready to `out`. How the input is cut in pieces makes no difference.
    void push(std::span<const std::int16_t> samples, std::vector<std::int16_t>& out);
    /// Appends what is still on its way, and silence behind it.
    void finish(std::vector<std::int16_t>& out);

private:
    void double_rate();
    void make_output(std::vector<std::int16_t>& out);

    bool m_wide; // the processor has vectors of eight
    std::size_t m_span; // doubled samples that a group of outputs looks at
    std::vector<float> m_half_band; // from the middle outwards
    std::vector<float> m_groups; // for each group of outputs: m_span times a coefficient for each
    std::vector<std::size_t> m_starts; // where each group starts, and the length of all at the end
    std::size_t m_group = 0; // the next one
    std::size_t m_origin = 0; // in m_doubled: where the first group of this round counts from
    std::vector<float> m_input; // with the past that is still needed
    std::vector<float> m_doubled;
};

} // namespace tessavox::voice
