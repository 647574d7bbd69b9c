// What stands in the file beside a Piper model, MODEL.onnx.json.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessavox::voice {

struct PiperSpeaker {
    std::string name; // empty in a model of one speaker
    int number = 0;
};

struct PiperConfig {
    int sample_rate = 0; // Hz
    std::string espeak_voice; // "en-us"; empty if not told
    std::vector<PiperSpeaker> speakers; // at least one, rising numbers, at most most_piper_speakers
};

/// Of a model of hundreds of speakers the first ones are listed.
constexpr std::size_t most_piper_speakers = 8;

/// The largest configs, of 900 speakers, have a tenth of it.
constexpr std::size_t most_piper_config_bytes = 1'048'576;

/// @throws Failure that says what is wrong.
PiperConfig parse_piper_config(std::string_view json);

} // namespace tessavox::voice
