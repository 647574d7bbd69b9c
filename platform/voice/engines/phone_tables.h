// The phones of the engines: what the mouth does at each, and their names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessavox::voice {

/// The viseme 0..21 of the public SAPI 5 table for a phone of the ARPAbet, such as "ae" or "sh".
/// Stress digits are ignored; what is unknown or silent is 0.
std::uint8_t viseme_of_arpabet(std::string_view phone);

/// The same for one of espeak-ng's phoneme mnemonics, such as "a" or "S". Its English phonemes are
/// known by name, those of other languages go by their first letter.
std::uint8_t viseme_of_espeak(std::string_view mnemonic);

/// espeak-ng's mnemonics for blank-separated SAPI 5 phoneme symbols of English, "h eh 1 l ow"
/// becoming "h'El oU" without the blank. Nothing if one of them is unknown or the whole is longer
/// than a word can be.
std::optional<std::string> espeak_phonemes_of_sapi(std::string_view symbols);

/// Flite's phone names for the same symbols, "hh eh1 l ow". Nothing under the same conditions.
std::optional<std::string> flite_phones_of_sapi(std::string_view symbols);

} // namespace tessavox::voice
