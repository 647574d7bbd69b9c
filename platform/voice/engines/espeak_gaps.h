// Characters that espeak-ng can't be trusted with.
#pragma once

namespace tessavox::voice {

/// What is spoken in place of `character`. espeak-ng 1.51 reads memory that it has freed already
/// when a character belongs to a script whose language doesn't know it, such as a number or a sign,
/// or a place in the script's block that is no letter at all. Decimal digits become those of ASCII,
/// which sound the same; the others become spaces, because no voice has a word for them. What is
/// not in the list can cost the helper that speaks, and with it a sentence.
char32_t safe_for_espeak(char32_t character);

} // namespace tessavox::voice
