// What an engine's program answers a line with: bytes that may be anything, and the sound in them.
#pragma once

#include "platform/voice/natural/voice_description.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tessavox::voice {

/// The line that precedes the samples in mode `frames`: "frames RATE COUNT", and then, if the
/// engine knows it, for each word of the line as parted by blanks the frame at which it begins, or
/// "-". The samples follow at once, 16 bits each, low byte first, one channel.
struct FramesHeader {
    int sample_rate = 0; // Hz
    std::size_t frames = 0;
    std::vector<std::optional<std::uint64_t>> words;
};

/// The most that a header has.
constexpr std::size_t most_frames_header = 16'384;

/// @throws Failure if it is no such line, or its sound is too long.
FramesHeader parse_frames_header(std::string_view line);

/// 16-bit mono, neither empty nor longer than two minutes.
struct EngineSound {
    int sample_rate = 0; // Hz
    std::vector<std::int16_t> samples;
    std::vector<std::optional<std::uint64_t>> words; // as in the header; often empty
};

/// The sound of an answer. `expected_rate` is 0 if any rate will do. @throws Failure that says what
/// is wrong with it: broken, empty, too long, stereo, not 16 bits, another rate.
EngineSound read_sound(CommandMode mode, std::span<const std::byte> answer, int expected_rate);

} // namespace tessavox::voice
