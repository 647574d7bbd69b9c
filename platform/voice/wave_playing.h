// A wave file that the voice plays.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"

namespace tessavox::voice {

/// Plays the wave file of `job` through the ring, or copies it to the job's file stream. Returns
/// when the job is over. Runs on the synthesis worker.
void play_wave(Playback& playback, EventQueue& events, Job& job);

} // namespace tessavox::voice
