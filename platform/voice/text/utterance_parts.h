// What becomes of an utterance that is spoken in parts.
#pragma once

#include "platform/voice/utterance.h"

#include <cstddef>

namespace tessavox::voice {

/// The part with the text from `begin` to `end` and what belongs to it; a token belongs where it
/// begins, and a bookmark where its token does. All parts carry the style; none has the sentence,
/// the pronunciation or the end of the sentence.
Utterance part_of(const Utterance& utterance, std::size_t begin, std::size_t end);

/// The utterance from its token `first` on, to be spoken anew.
Utterance rest_of(const Utterance& utterance, std::size_t first);

/// The utterance up to, not including, its token `end`.
Utterance start_of(const Utterance& utterance, std::size_t end);

/// The token before which an utterance of more than `most_units` of text is best divided, so that
/// its first part has no more: after a punctuation mark if there is one far enough on. Without one
/// no place is better than another, and half as much is made sooner. 0: leave it whole.
std::size_t division_of(const Utterance& utterance, std::size_t most_units);

} // namespace tessavox::voice
