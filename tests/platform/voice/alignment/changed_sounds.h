// What happens to a sound on its way from an engine whose word times are known to the aligner.
#pragma once

#include "platform/voice/utterance.h"

namespace tessavox::voice {

/// Changes a sound, and its word marks with it.
using Change = void (*)(Rendering& spoken);

constexpr std::size_t changed_word = 4;

void leave_alone(Rendering& spoken);
/// Half a second of silence before the third and the sixth word. The phones move along too.
void pause_falsely(Rendering& spoken);
/// The changed word isn't said.
void swallow_word(Rendering& spoken);
/// The changed word is said twice.
void say_word_twice(Rendering& spoken);
void add_hiss(Rendering& spoken);
void add_echoes(Rendering& spoken);
/// Every other word takes two thirds of its time, the rest four thirds.
void vary_tempo(Rendering& spoken);

} // namespace tessavox::voice
