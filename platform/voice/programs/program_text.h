// What a program is given to read for an utterance.
#pragma once

#include "platform/voice/engines/spoken_text.h"
#include "platform/voice/natural/voice_description.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessavox::voice {

/// One line without controls.
struct ProgramText {
    std::string line; // in the encoding of the voice; empty if there is nothing to read
    std::vector<std::uint32_t> tokens; // that each word of it, as parted by blanks, belongs to
};

/// Spelled characters stand as words of their own. Punctuation marks that are to be spoken stand by
/// their names in English; other languages' programs can't be told. What an engine could take for a
/// command is broken up.
ProgramText program_text(const Utterance& utterance, const VoiceDescription& voice);

/// Whether the voice reads English.
bool is_english(const VoiceDescription& voice);

} // namespace tessavox::voice
