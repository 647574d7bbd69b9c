// Turns mono or stereo 16-bit sound of any rate into one of the output formats.
#pragma once

#include "platform/voice/sound/pcm_format.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tessavox::voice {

/// One continuous stream from an input rate to an output format: state is carried from call to
/// call, so no seam is heard where one chunk ends and the next begins. A frame at input time t
/// comes out at output time t. With equal rates and 16 bit the samples pass unchanged.
class Converter {
public:
    /// @throws Failure if the rates can't be converted.
    Converter(int input_rate, int input_channels, PcmFormat output);
    ~Converter();
    Converter(Converter&&) noexcept;
    Converter& operator=(Converter&&) noexcept;

    /// Appends what is ready to `out`, whole frames of the output format. `samples` is interleaved.
    void push(std::span<const std::int16_t> samples, std::vector<std::byte>& out);
    /// Appends the rest. The total of frames is then the input's, times the ratio of the rates,
    /// rounded. The converter can't be used afterwards.
    void finish(std::vector<std::byte>& out);

    int input_rate() const;
    int input_channels() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
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

} // namespace tessavox::voice
