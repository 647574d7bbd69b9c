// The engines that are programs of others, behind the interface of all engines.
#pragma once

#include "platform/voice/engine.h"
#include "platform/voice/programs/engine_keeper.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace tessavox::voice {

/// The natural voices of these places. Their words and phones are put by aligning them with
/// espeak-ng, unless their program tells the words itself. They are rendered at their natural speed
/// and pitch; rate, pitch and emphasis bend the finished sound. What markup gives as phonemes is
/// read as the text that it encloses.
///
/// What a program fails at twice is spoken by the reference voice, that of espeak-ng for the same
/// language. A program that fails three times in a row is not asked for a minute, which is told
/// once on the standard errors. One thread uses it.
std::unique_ptr<Engine> make_program_engine(const VoicePlaces& places, EngineKeeper& keeper);

/// The voice of espeak-ng that a natural voice is compared with and replaced by, by its id among
/// all voices. English if the language has none.
std::string reference_voice_of(const VoiceDescription& voice);

class Aligner;

struct SpokenAnswer {
    Rendering rendering; // trimmed, with marks
    bool doubtful = false; // it may be the answer to another line
};

/// What an answer tells of an utterance. `answer` is what the program says to its line, `reference`
/// what its reference voice makes of it. @throws Failure that says what is wrong with the answer.
SpokenAnswer read_spoken(const VoiceDescription& voice, std::span<const std::byte> answer,
    const Utterance& utterance, const Rendering& reference, Aligner& aligner);

} // namespace tessavox::voice
