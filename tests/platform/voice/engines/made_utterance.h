// Utterances for tests, as simple as can be: words are what blanks part.
#pragma once

#include "platform/voice/utterance.h"

#include <string_view>

namespace tessavox::voice::tests {

inline Utterance utterance_of(std::u16string_view text, SpeechStyle style = {})
{
    Utterance utterance;
    utterance.text = text;
    utterance.style = std::move(style);
    utterance.ends_sentence = true;
    const auto is_blank
        = [](char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n'; };
    for (std::uint32_t at = 0; at < text.size();) {
        const std::uint32_t begin = at;
        if (is_blank(text[at])) {
            ++at;
            continue;
        }
        while (at < text.size() && !is_blank(text[at]) && (!utterance.style.spell || at == begin))
            ++at;
        utterance.tokens.push_back({ begin, at - begin, begin, at - begin });
    }
    return utterance;
}

} // namespace tessavox::voice::tests
