// Text for an engine that reads nothing but English in ASCII.
#pragma once

#include "platform/voice/engines/spoken_text.h"

#include <vector>

namespace tessavox::voice {

/// The utterance's text in ASCII: letters without their accents and in Latin script, signs by their
/// English names. Spelled characters and spoken punctuation marks stand as words of their own.
/// `tokens` tells for each byte which token it belongs to.
SpokenText ascii_text(const Utterance& utterance);

/// For each token whether nothing of it is in that text.
std::vector<bool> silent_in_ascii(const Utterance& utterance);

} // namespace tessavox::voice
