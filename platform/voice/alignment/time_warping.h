// Finds which part of one sound says the same as which part of another: dynamic time warping
// (Sakoe and Chiba, 1978) with silences that may come or stay away.
#pragma once

#include "platform/voice/alignment/sound_features.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessavox::voice {

/// What the target is held against, in its order. Two silences never follow each other.
struct WarpRow {
    enum class Kind {
        sound,
        expected_silence, // the reference pauses here too
        possible_silence,
    };
    Kind kind = Kind::sound;
    SliceVector vector{}; // of a sound
};

/// A slice of the target sounds as a row does.
struct WarpPoint {
    std::uint32_t row = 0;
    std::uint32_t slice = 0;
};

/// The best way. Rows and slices never fall; every row that is a sound and every slice is on it.
struct WarpPath {
    std::vector<WarpPoint> points;
    float cost = 0; // for each row and slice passed: comparable between sounds
};

/// The path through all of `vectors`, the slices of the target, whose `levels` are in dB. Empty if
/// there is no slice or no row that sounds.
WarpPath warp(std::span<const WarpRow> rows, std::span<const SliceVector> vectors,
    std::span<const float> levels);

} // namespace tessavox::voice
