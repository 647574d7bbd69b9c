// Carries the marks of a reference over to the sound that it was aligned with.
#pragma once

#include "platform/voice/alignment/time_warping.h"
#include "platform/voice/alignment/warp_rows.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessavox::voice {

/// A phone of the reference where the target has it, from `frame` for `frames`.
struct AlignedPhone {
    static constexpr std::int32_t pause = -1;
    std::int32_t phone = pause; // index in ReferenceSpeech::phones
    std::uint64_t frame = 0;
    std::uint64_t frames = 0;
};

/// Where the words and phones of the reference are in the target. They count in its frames.
struct AlignedMarks {
    std::vector<std::uint64_t> words; // one for each of the reference; never falls
    std::vector<AlignedPhone> phones; // one after the other, none empty
    // Whether both are far less alike than this voice and its references have been: it may have
    // said something else.
    bool doubtful = false;
};

/// The sound that marks are carried to.
struct MarkTarget {
    int sample_rate = 0;
    std::uint64_t frames = 0; // its length
    std::size_t first_slice = 0; // that of the path's slice 0
    std::span<const float> levels; // of the path's slices, in dB
};

AlignedMarks map_marks(const ReferenceSpeech& reference, const ReferenceRows& rows,
    const WarpPath& path, const MarkTarget& target);

/// For sounds of which one is silent: each word at the same share of the whole, and one long pause.
AlignedMarks spread_marks(const ReferenceSpeech& reference, const MarkTarget& target);

} // namespace tessavox::voice
