// Plays what the synthesis worker makes, and tells what is heard at the moment when it is heard.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound/audio_sink.h"

namespace tessavox::voice {

/// The second thread of a voice. It renders nothing, so that no word is late because the next one
/// is being made. Where there is no device, or it vanishes or hangs, a clock takes its place, so
/// that the words go on; meanwhile the device is looked for, and the sound comes back where the
/// words are.
/// Returns as soon as the playback stops; only the server, which is kept for that, may still be
/// busy with a stream then.
void run_pacer(Playback& playback, EventQueue& events, std::shared_ptr<SoundServer> server);

} // namespace tessavox::voice
