// The encoding of a text that doesn't tell it.
#pragma once

#include <string>
#include <string_view>

namespace tessavox {

/// "UTF-16LE" or "UTF-16BE" if the zero bytes of the text lie as they do there, otherwise empty.
/// Bytes that are valid UTF-8 as well have to be more certain.
std::string utf16_by_zero_bytes(std::string_view bytes, bool is_valid_utf8);

/// For text that is neither UTF-8 nor UTF-16: what its letters suggest, as ICU names it. Encodings
/// that read the text alike count as the one of them that is most in use.
std::string encoding_by_letters(std::string_view bytes);

} // namespace tessavox
