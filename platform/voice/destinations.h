// Where the sound of a source goes. Both run on the synthesis worker and return when the job is
// over.
#pragma once

#include "platform/voice/playback.h"
#include "platform/voice/sound_source.h"
#include "platform/voice/stream.h"

namespace tessavox::voice {

/// Fills the ring, from which the pacer plays, and hands the source the orders that come meanwhile.
void play(SoundSource& source, Playback& playback, const Job& job);

/// Writes as fast as it can; nothing is paced, and a pause, which holds the sound, does not hold
/// it. A purge ends it where it is.
void write(SoundSource& source, Stream& stream);

} // namespace tessavox::voice
