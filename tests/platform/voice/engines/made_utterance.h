// Utterances for tests, as simple as can be: words are what blanks part.
#pragma once

#include "platform/voice/utterance.h"

#include <algorithm>
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

/// The same for a text of which "|" parts words too, but is left out: "東京|へ".
inline Utterance parted(std::u16string_view text)
{
    Utterance whole;
    whole.ends_sentence = true;
    while (!text.empty()) {
        const std::u16string_view piece = text.substr(0, text.find(u'|'));
        for (Token token : utterance_of(piece).tokens) {
            token.begin += static_cast<std::uint32_t>(whole.text.size());
            whole.tokens.push_back(token);
        }
        whole.text += piece;
        text.remove_prefix(std::min(piece.size() + 1, text.size()));
    }
    return whole;
}

} // namespace tessavox::voice::tests
