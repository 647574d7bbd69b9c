// From espeak-ng's reports to the times of tokens.
#pragma once

#include "platform/voice/engines/espeak_library.h"
#include "platform/voice/engines/spoken_text.h"
#include "platform/voice/engines/word_timing.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace tessavox::voice {

/// What the library reported of one call: its words and phones from these places on.
struct EspeakReports {
    const EspeakSound& sound;
    std::size_t first_word = 0;
    std::size_t first_phone = 0;
};

/// How many phones a token has that is spoken by itself; 0 if nobody knows.
using PhonesOfToken = std::function<std::size_t(std::uint32_t token)>;

/// The tokens of `text` with their times. The library's reports are not taken as they are:
/// - What is said in several words it reports at the blank after it as well.
/// - A word whose report comes together with the last phone before it, or with a pause, is told too
///   early; it begins with its own first phone.
/// - Of words that it merges, such as "of the", it reports the first. The others begin where
///   counting their phones from the end leads to.
std::vector<HeardToken> heard_tokens(
    const SpokenText& text, const EspeakReports& reports, const PhonesOfToken& phones_of);

/// Whether a phoneme of the library sounds: it is no pause, no change of language, no modifier.
bool is_sounding(const EspeakSound::Phone& phone);

/// How many phones EspeakLibrary::phonemes_of() names.
std::size_t count_phones(std::string_view phonemes);

} // namespace tessavox::voice
