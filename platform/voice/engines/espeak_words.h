// What espeak-ng 1.51 can't be trusted with.
#pragma once

#include <string>
#include <vector>

namespace tessavox::voice {

/// What is spoken in place of `character`. The library reads memory that it has freed already when
/// a character belongs to a script whose language doesn't know it, such as a number or a sign. The
/// digits of India become those of ASCII, which sound the same; the others become spaces, because
/// no voice has a word for them. What else there is can cost the helper that speaks, and with it a
/// sentence.
char32_t safe_for_espeak(char32_t character);

/// For each place in `text` whether a blank must stand before it. The library's faults, each found
/// with the address sanitizer or by a crash:
/// - For a word in another script than the voice's own it changes its language, and where that
///   language doesn't know a character of the word, such as a letter of a third script or an
///   apostrophe, it goes on in memory that it has freed. So each script is a word of its own.
/// - It spells words without a vowel, and does so in freed memory if they are Armenian or Georgian.
///   They are spelled here instead, as are old letters that no language of the library knows.
/// - "a.b.c." is an abbreviation that it copies to its stack, however long it is.
std::vector<bool> breaks_for_espeak(std::u32string_view text);

} // namespace tessavox::voice
