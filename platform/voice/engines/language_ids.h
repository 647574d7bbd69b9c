// Numbers of languages, as markup asks for them.
#pragma once

#include <string>
#include <string_view>

namespace tessavox::voice {

/// The Windows language id (MS-LCID) of a BCP 47 tag in hexadecimal without 0x, several by ';'
/// where a language has several: "en-us" gives "409", "es" gives "c0a;40a". Subtags that are not
/// known are dropped from the end. Empty for a language without a number.
std::string language_ids_of(std::string_view tag);

} // namespace tessavox::voice
