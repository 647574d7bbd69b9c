// What of an utterance is handed to espeak-ng, and which token each character of it belongs to.
#pragma once

#include "platform/voice/utterance.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace tessavox::voice {

/// Words, spoken in one call.
struct PlainPiece {
    std::string utf8;
    std::vector<std::uint32_t> tokens; // for each code point the token at it, or the next one
};

/// Characters that are spoken by their names, as one token.
struct NamedPiece {
    std::u32string characters;
    std::uint32_t token = 0;
};

using EspeakPiece = std::variant<PlainPiece, NamedPiece>;

/// The utterance's text in pieces: a spelled one character by character, otherwise words, with the
/// punctuation marks between them by name where they are tokens. Whatever the library could take
/// for a command (control characters, private characters, lone surrogates) becomes a space, one for
/// one. Two contexts change the words: "date_..." names the month of a date of digits, where
/// `english` is set, and "phone_number" and "number_digit" read digit by digit. Others have no
/// effect: the library reads cardinals, ordinals and currencies by itself.
std::vector<EspeakPiece> espeak_pieces(const Utterance& utterance, bool english);

} // namespace tessavox::voice
