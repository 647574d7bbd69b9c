// What happens while one utterance is heard, and what becomes of an utterance that is cut.
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

/// All events of an utterance, by frame. `changed_voice` is the catalogue index of the voice that
/// markup has just changed to, -1 if it has not. They get the sequence numbers from
/// `next_sequence`, which rises by their count.
std::vector<StreamEvent> events_of(const Utterance& utterance, const Rendering& rendering,
    int changed_voice, const FrameOfSample& frame_of, std::uint64_t& next_sequence);

/// The peaks of a stretch of sound, about 20 a second, as AudioLevel events.
void append_levels(std::span<const std::int16_t> samples, int sample_rate, int channels,
    const FrameOfSample& frame_of, std::uint64_t& next_sequence, std::vector<StreamEvent>& out);

/// The utterance from its token `first` on, to be spoken anew.
Utterance rest_of(const Utterance& utterance, std::size_t first);

/// The utterance up to, not including, its token `end`.
Utterance start_of(const Utterance& utterance, std::size_t end);

/// The token before which an utterance of more than `most_units` of text is best divided, so that
/// its first part has no more: behind a punctuation mark if there is one far enough on. 0: leave it
/// whole.
std::size_t division_of(const Utterance& utterance, std::size_t most_units);

/// Applies the volume that markup asks for.
void scale_to_style(std::vector<std::int16_t>& samples, const SpeechStyle& style);

} // namespace tessavox::voice
