#include "platform/voice/engines/espeak_text.h"

#include "platform/voice/engines/espeak_gaps.h"
#include "platform/voice/engines/espeak_words.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

std::u32string characters_of(std::u16string_view text)
{
    std::u32string characters;
    for (std::size_t at = 0; at < text.size();)
        characters += safe_for_espeak(next_character(text, at));
    return characters;
}

// The library passes over these without a sound, though a person reads them as words.
bool is_silent_sign(std::u16string_view token)
{
    return !token.empty() && (token.front() == u'<' || token.front() == u'>')
        && token.find_first_not_of(token.front()) == std::u16string_view::npos;
}

bool is_blank(const std::string& text)
{
    return text.find_first_not_of(' ') == std::string::npos;
}

// The text from `begin` to `end`. `first` is the first token that ends after `begin`, or an earlier
// one.
SpokenText words_of(
    const Utterance& utterance, std::size_t begin, std::size_t end, std::uint32_t first)
{
    const std::u16string_view text(utterance.text.data(), end);
    std::u32string characters;
    std::vector<std::uint32_t> tokens;
    std::uint32_t token = first;
    for (std::size_t at = begin; at < end;) {
        while (token + 1 < utterance.tokens.size() && token_end(utterance, token) <= at)
            ++token;
        characters += safe_for_espeak(next_character(text, at));
        tokens.push_back(token);
    }
    const std::vector<bool> breaks = breaks_for_espeak(characters);
    SpokenText words;
    for (std::size_t at = 0; at < characters.size(); ++at) {
        if (breaks[at])
            words.append(" ", tokens[at]);
        words.append(characters[at], tokens[at]);
    }
    return words;
}

} // namespace

std::vector<EspeakPiece> espeak_pieces(const Utterance& utterance, bool english)
{
    std::vector<EspeakPiece> pieces;
    std::size_t begin = 0;
    std::uint32_t first = 0;
    const auto add_words = [&](std::size_t end) {
        if (begin >= end)
            return;
        SpokenText words;
        for (const ContextStretch& stretch : context_stretches(utterance, begin, end)) {
            SpokenText some = words_of(utterance, stretch.begin, stretch.end, first);
            apply_context(some, stretch.context, english);
            words.append(some);
        }
        if (!is_blank(words.utf8))
            pieces.emplace_back(std::move(words));
    };
    const SpeechStyle& style = utterance.style;
    for (std::uint32_t token = 0; token < utterance.tokens.size(); ++token) {
        std::u16string_view text = token_text(utterance, token);
        const bool silent = is_silent_sign(text);
        if (!style.spell && !silent && !(style.speak_punctuation && is_mark(text)))
            continue;
        if (silent) // a row of them is said once
            text = text.substr(0, 1);
        add_words(utterance.tokens[token].begin);
        pieces.emplace_back(NamedPiece{ characters_of(text), token });
        begin = token_end(utterance, token);
        first = token + 1;
    }
    add_words(utterance.text.size());
    return pieces;
}

} // namespace tessavox::voice
