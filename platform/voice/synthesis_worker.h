// The thread of a voice that makes its sound.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"
#include "platform/voice/speech_engines.h"

namespace tessavox::voice {

/// Takes job after job, to the sound output or into its file. Returns when the playback stops.
void run_synthesis(SpeechEngines& engines, Playback& playback, EventQueue& events);

} // namespace tessavox::voice
