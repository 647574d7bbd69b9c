// Brings sounds of any rate into the frames of one output stream, and to a loudness.
#pragma once

#include "platform/voice/sound/pcm_format.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct soxr;

namespace tessavox::voice {

/// Turns mono or stereo 16-bit sound into an output format, and knows at every moment which frame
/// of the output the next sample will be. State is carried from call to call, so that no seam is
/// heard where one sound ends and the next begins; a sound of another rate begins anew. A frame at
/// input time t comes out at output time t. With equal rates and 16 bit the samples pass unchanged.
class Converter {
public:
    /// @throws Failure if there is no such sound.
    explicit Converter(PcmFormat output);

    /// What was pushed is void; the next sample is to be heard at `frame`.
    void restart(std::uint64_t frame);
    /// The next samples have this rate and 1 or 2 channels. Appends to `out` what a change lets go.
    /// @throws Failure if they can't be converted.
    void begin(int rate, int channels, std::vector<std::byte>& out);
    /// The rate in use, or `otherwise` before the first begin().
    int rate_or(int otherwise) const { return m_rate ? m_rate : otherwise; }
    /// The frame at which the sample is heard that comes `ahead` samples after the next one.
    std::uint64_t frame_of(std::uint64_t ahead) const;
    /// Appends what is ready to `out`, whole frames of the output format. `samples` is interleaved.
    void push(std::span<const std::int16_t> samples, std::vector<std::byte>& out);
    /// Appends the rest: the total of frames is then the input's, times the ratio of the rates,
    /// rounded. More may follow after another begin().
    void finish(std::vector<std::byte>& out);

private:
    struct Release {
        void operator()(soxr* resampler) const;
    };
    struct Step {
        std::size_t taken; // frames
        std::size_t made;
    };
    std::span<const std::int16_t> mixed(std::span<const std::int16_t> stereo);
    Step resample(const std::int16_t* samples, std::size_t frames, std::uint64_t total,
        std::vector<std::byte>& out);
    void emit(std::span<const std::int16_t> samples, std::vector<std::byte>& out);

    PcmFormat m_output;
    int m_rate = 0; // of the input; 0: nothing has begun
    std::size_t m_input_channels = 1;
    std::size_t m_channels = 1; // while resampling: the fewer of both sides, as that is less work
    std::unique_ptr<soxr, Release> m_resampler; // none if the rates are equal
    std::vector<std::int16_t> m_mixed;
    std::vector<std::int16_t> m_resampled;
    std::uint64_t m_base = 0; // output frame of the first sample since begin()
    std::uint64_t m_pushed = 0; // frames of input since then
    std::uint64_t m_made = 0; // frames of output since then
};

/// Multiplies frames in place by a gain that glides within a few milliseconds to where it is set,
/// so that a change is heard at once and makes no click. 8-bit and 16-bit formats.
class Gain {
public:
    explicit Gain(PcmFormat format);
    /// `factor` 0..1. What is set before the first frames takes effect without gliding.
    void set(float factor);
    void apply(std::span<std::byte> frames);

private:
    PcmFormat m_format;
    float m_current = 1.0F;
    float m_wanted = 1.0F;
    bool m_started = false;
};

/// Multiplies whole frames in place by a factor 0..1.
void scale(std::span<std::byte> frames, PcmFormat format, float factor);

} // namespace tessavox::voice
