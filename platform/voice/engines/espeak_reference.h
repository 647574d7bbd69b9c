// What espeak-ng says, as the reference that other engines are aligned with.
#pragma once

#include "platform/voice/alignment/reference_speech.h"
#include "platform/voice/utterance.h"

namespace tessavox::voice {

/// `spoken` is a rendering by the espeak-ng engine at its normal rate.
ReferenceSpeech espeak_reference(Rendering spoken);

} // namespace tessavox::voice
