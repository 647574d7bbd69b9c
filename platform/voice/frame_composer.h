// Brings sounds of several rates into the frames of one output stream.
#pragma once

#include "platform/voice/sound/converter.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tessavox::voice {

/// Knows at every moment which frame of the output the next sample will be. One converter runs on
/// from sound to sound, so that no seam is heard; a sound of another rate begins a new one.
class FrameComposer {
public:
    explicit FrameComposer(PcmFormat format);

    /// What was pushed is void; the next sample is to be heard at `frame`.
    void restart(std::uint64_t frame);
    /// The next samples have this rate. Appends to `out` what the change of rate lets go.
    void begin(int rate, int channels, std::vector<std::byte>& out);
    /// The rate in use, or `otherwise` before the first begin().
    int rate_or(int otherwise) const;
    /// The frame at which the sample is heard that comes `ahead` samples after the next one.
    std::uint64_t frame_of(std::uint64_t ahead) const;
    /// `samples` is interleaved; whole frames of the output are appended to `out`.
    void push(std::span<const std::int16_t> samples, std::vector<std::byte>& out);
    /// Appends the rest. More may follow after another begin().
    void finish(std::vector<std::byte>& out);

private:
    PcmFormat m_format;
    std::optional<Converter> m_converter;
    std::uint64_t m_base = 0; // output frame of the converter's first sample
    std::uint64_t m_pushed = 0; // frames of input since then
    std::uint64_t m_made = 0; // frames of output since then
};

} // namespace tessavox::voice
