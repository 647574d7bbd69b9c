// What of an utterance is handed to espeak-ng, and which token each character of it belongs to.
#pragma once

#include "platform/voice/engines/spoken_text.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace tessavox::voice {

/// Characters that are spoken by their names, as one token.
struct NamedPiece {
    std::u32string characters;
    std::uint32_t token = 0;
};

using EspeakPiece = std::variant<SpokenText, NamedPiece>;

/// The utterance's text in pieces: a spelled one character by character, otherwise words, with the
/// punctuation marks between them by name where those are tokens that are to be spoken.
std::vector<EspeakPiece> espeak_pieces(const Utterance& utterance, bool english);

} // namespace tessavox::voice
