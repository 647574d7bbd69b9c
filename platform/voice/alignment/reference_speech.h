// What an engine without word times is compared with: the same words spoken by one that has them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tessavox::voice {

enum class PhoneKind {
    pause,
    stop, // begins with a closed mouth, in silence: p t k b d g and their kin
    other,
};

/// A phone sounds from `frame` for `frames`.
struct ReferencePhone {
    std::string name; // the engine's own; what has one name sounds alike
    PhoneKind kind = PhoneKind::other;
    std::uint64_t frame = 0;
    std::uint64_t frames = 0;
};

/// 16-bit mono, as all sound of the voice.
struct ReferenceSpeech {
    int sample_rate = 0; // Hz
    std::vector<std::int16_t> samples;
    std::vector<std::uint64_t> words; // the frame at which each token begins; never falls
    std::vector<ReferencePhone> phones; // rising, not overlapping
};

} // namespace tessavox::voice
