// What happens while one utterance is heard.
#pragma once

#include "platform/voice/stream_event.h"
#include "platform/voice/utterance.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tessavox::voice {

/// The frame of the output at which a sample of the rendering is heard.
using FrameOfSample = std::function<std::uint64_t(std::uint64_t)>;

/// The events of an utterance, by frame; of phonemes, visemes and levels, which are most of all,
/// only those that are among `interests`. `changed_voice` is the catalogue index of the voice that
/// markup has just changed to, -1 if it has not. They get the sequence numbers from
/// `next_sequence`, which rises by their count.
std::vector<StreamEvent> events_of(const Utterance& utterance, const Rendering& rendering,
    int changed_voice, std::int32_t interests, const FrameOfSample& frame_of,
    std::uint64_t& next_sequence);

/// The peaks of a stretch of sound, about 20 a second, as AudioLevel events.
void append_levels(std::span<const std::int16_t> samples, int sample_rate, int channels,
    const FrameOfSample& frame_of, std::uint64_t& next_sequence, std::vector<StreamEvent>& out);

/// Brings the sound to the levels that markup asks for, with a short ramp before each word at which
/// the level changes, so that nothing clicks.
void apply_levels(const Utterance& utterance, Rendering& rendering);

} // namespace tessavox::voice
