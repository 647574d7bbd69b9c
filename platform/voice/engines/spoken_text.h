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
    void append(const SpokenText& text);
};

/// Reads the code point at `at` of UTF-16 and moves past it. What is no sound but could be a
/// command of an engine becomes a space: controls, lone surrogates, private characters.
char32_t next_harmless(std::u16string_view text, std::size_t& at);

/// Whether a token is a punctuation mark or sign rather than a word.
bool is_mark(std::u16string_view token);

/// The text of a token, cut to what is there.
std::u16string_view token_text(const Utterance& utterance, std::uint32_t token);

/// The end of a token in the text, likewise.
std::size_t token_end(const Utterance& utterance, std::uint32_t token);

/// A stretch of an utterance's text that is under one context hint, or under none.
struct ContextStretch {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string_view context;
};

/// The text from `begin` to `end` in its stretches; none if it is empty.
std::vector<ContextStretch> context_stretches(
    const Utterance& utterance, std::size_t begin, std::size_t end);

/// What a context of markup changes. "date_mdy" and its kin name the month of a date of digits,
/// where `english` is set; "phone_number" and "number_digit" read digit by digit. Others have no
/// effect: engines read cardinals, ordinals and currencies by themselves.
void apply_context(SpokenText& text, std::string_view context, bool english);

} // namespace tessavox::voice
