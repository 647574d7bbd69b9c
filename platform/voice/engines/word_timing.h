// Gives every token of an utterance its place in the sound, although engines report some words
// twice, some together and some not at all.
#pragma once

#include "platform/voice/utterance.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessavox::voice {

/// An engine's word that lies in a token, in the order in which the engine reported them.
struct HeardToken {
    std::uint32_t token = 0;
    std::uint64_t frame = 0;
    std::uint32_t phone = 0; // where it begins in the engine's own list of phones, if that is known
};

/// The longest run with rising tokens, so that one report far ahead of the truth doesn't swallow
/// all words after it. Of equally long runs it takes the earliest reports.
std::vector<HeardToken> rising_run(std::span<const HeardToken> heard);

/// One mark for each token. Of `heard` it keeps the longest run of rising tokens; the tokens
/// between them share the time between their neighbours by their lengths, each at the nearest start
/// of a phone. `phones` rise, a viseme 0 is a pause; `end` is the length of the sound in frames.
std::vector<WordMark> complete_marks(std::span<const Token> tokens,
    std::span<const HeardToken> heard, std::span<const PhoneMark> phones, std::uint64_t end);

} // namespace tessavox::voice
