// What of an utterance is handed to espeak-ng, and which token each character of it belongs to.
#pragma once

#include "platform/voice/engines/spoken_text.h"

#include <cstdint>
#include <functional>
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

/// Whether the library makes no sound of a sign, given in UTF-8.
using PassesOver = std::function<bool(const std::string&)>;

/// The text without what the library can't be trusted with.
std::string safe_utf8(std::u16string_view text);

struct EspeakText {
    std::vector<EspeakPiece> pieces;
    std::vector<bool> silent; // for each token whether nothing of it is said
};

/// The utterance's text in pieces: a spelled one character by character, otherwise words, with the
/// punctuation marks between them by name where those are tokens that are to be spoken. Signs that
/// the library passes over get their English names in English; in other languages those few by
/// name whose names the library has, and the others are left out.
///
/// Tokens that follow each other without a blank are parted by one where the library would take
/// them for one word: in scripts that set none, and at signs.
EspeakText espeak_text(const Utterance& utterance, bool english, const PassesOver& passes_over);

} // namespace tessavox::voice
