// Slows speech down, or speeds it up, without moving its pitch.
#pragma once

#include "platform/voice/utterance.h"

namespace tessavox::voice {

/// Makes the sound last 1/`speed` as long and its pitch `pitch` times as high, and moves the marks
/// along. Both 1: nothing happens. @throws Failure if there is no memory for it.
void stretch(Rendering& rendering, double speed, double pitch);

} // namespace tessavox::voice
