// Text on its way into an engine, with the way back to the tokens.
#pragma once

#include "platform/voice/utterance.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessavox::voice {

/// Words for one engine call, in UTF-8 without NUL and control characters.
struct SpokenText {
    std::string utf8;
    std::vector<std::uint32_t> tokens; // for each code point the token at it, or the next one

    /// Appends ASCII as part of `token`.
    void append(std::string_view ascii, std::uint32_t token);
    void append(char32_t character, std::uint32_t token);
};

/// Reads the code point at `at` of UTF-16 and moves behind it. What is no sound but could be a
/// command of an engine becomes a space: controls, lone surrogates, private characters.
char32_t next_character(std::u16string_view text, std::size_t& at);

/// Whether a token is a punctuation mark or sign rather than a word.
bool is_mark(std::u16string_view token);

/// The text of a token, cut to what is there.
std::u16string_view token_text(const Utterance& utterance, std::uint32_t token);

/// The behind of a token in the text, likewise.
std::size_t token_end(const Utterance& utterance, std::uint32_t token);

/// What a context of markup changes. "date_mdy" and its kin name the month of a date of digits,
/// where `english` is set; "phone_number" and "number_digit" read digit by digit. Others have no
/// effect: engines read cardinals, ordinals and currencies by themselves.
void apply_context(SpokenText& text, const std::string& context, bool english);

} // namespace tessavox::voice
