// The English names of signs.
#pragma once

#include <string>
#include <string_view>

namespace tessavox::voice {

/// The name of a character that is neither letter nor digit, as Unicode has it but in small
/// letters, or as people say it: "snowman", "dash". Empty for what has none or only changes the
/// look of another character.
std::string english_name(char32_t sign);

/// The names of a token's signs, one after the other; that of a row of one sign once. The letters
/// of a flag are named as letters.
std::string english_names(std::u32string_view signs);

} // namespace tessavox::voice
