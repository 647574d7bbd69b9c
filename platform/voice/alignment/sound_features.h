// What two voices have in common when they say the same: the course of the spectrum, cut into
// slices of a hundredth of a second and told in few numbers.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tessavox::voice {

/// Slices follow each other by this; slice n is centred at n times this.
constexpr int slices_per_second = 100;

constexpr std::size_t cepstrum_count = 12;

/// The cepstrum, its change over 40 ms, and the level: points whose Euclidean distance tells how
/// unlike two slices sound. Padded with zeros to what processors add up at once.
using SliceVector = std::array<float, 28>;

/// How unlike two slices sound: 0 for the same, about 9 for the same phone of two voices, 20 and
/// more for different ones.
float distance_of(const SliceVector& one, const SliceVector& other);

/// A sound's slices.
struct SoundFeatures {
    std::vector<SliceVector> vectors;
    std::vector<float> levels; // dB, of which the 95th percentile of the sound is 0
};

/// The level below which a sound is silent, in dB: its quietest parts and a little more. There must
/// be a level.
float quiet_level(std::span<const float> levels);

/// The first slice and the one after the last of what is louder than a breath, with a margin. Both
/// are 0 if nothing is.
struct SoundEdges {
    std::size_t begin = 0;
    std::size_t end = 0;
};
SoundEdges edges_of(const SoundFeatures& features);

/// The highest frequency that a sound of this sample rate tells of, as far as speech needs it.
double highest_told_hz(int sample_rate);

/// Reads the features out of sounds of one sample rate. It keeps working memory, so it serves one
/// thread at a time.
class FeatureExtractor {
public:
    /// Sounds can be compared if `highest_hz` is the same for both; it is at most what
    /// highest_told_hz() says. @throws Failure if the rate is below 4 kHz or above 400 kHz.
    FeatureExtractor(int sample_rate, double highest_hz);
    ~FeatureExtractor();

    bool is_for(int sample_rate, double highest_hz) const;
    /// One slice for every hundredth of a second begun, so none for an empty sound.
    SoundFeatures features_of(std::span<const std::int16_t> samples);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace tessavox::voice
