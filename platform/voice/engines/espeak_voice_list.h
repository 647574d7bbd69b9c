// How espeak-ng's voices are shown to people.
#pragma once

#include "platform/speech_voice.h"
#include "platform/voice/engines/espeak_library.h"

#include <string>
#include <string_view>
#include <vector>

namespace tessavox::voice {

/// A token for each voice with a readable, unique description such as "English (America), male".
/// The voices of `languages` stand first, in that order; the others follow by description.
std::vector<SpeechObjectToken> espeak_tokens(
    const std::vector<EspeakVoice>& voices, const std::vector<std::string>& languages);

/// The user's languages as lower-case tags such as "en-us", by the environment variables that all
/// programs go by: LANGUAGE, then LC_ALL, LC_MESSAGES, LANG. American English if they name none.
std::vector<std::string> languages_of_user();

/// The tag of a locale's name: "de_AT.UTF-8@euro" gives "de-at", "C" gives "".
std::string tag_of_locale(std::string_view locale);

/// What stands before espeak-ng's own identifier in a token's id.
constexpr std::string_view espeak_id_prefix = "espeak:";

} // namespace tessavox::voice
