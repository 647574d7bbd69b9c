#include "platform/voice/engines/espeak_text.h"

#include "platform/voice/engines/espeak_gaps.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

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

bool is_blank(const std::string& text)
{
    return text.find_first_not_of(' ') == std::string::npos;
}

// espeak-ng changes its language within a word that goes from one script to another, and then reads
// the rest of it in memory that it has freed. A blank between the two makes them two words.
class ScriptWatch {
public:
    // Whether `character` must be parted from what stood before it.
    bool changes(char32_t character)
    {
        const UScriptCode script = script_of(character);
        if (character == U' ')
            m_script = USCRIPT_COMMON;
        if (script == USCRIPT_COMMON || script == USCRIPT_INHERITED)
            return false;
        const bool changed = m_script != USCRIPT_COMMON && m_script != script;
        m_script = script;
        return changed;
    }

private:
    static UScriptCode script_of(char32_t character)
    {
        if (character < 0x80)
            return u_isalpha(static_cast<UChar32>(character)) ? USCRIPT_LATIN : USCRIPT_COMMON;
        UErrorCode status = U_ZERO_ERROR;
        const UScriptCode script = uscript_getScript(static_cast<UChar32>(character), &status);
        // A Japanese word mixes three scripts.
        const bool japanese
            = script == USCRIPT_HAN || script == USCRIPT_HIRAGANA || script == USCRIPT_KATAKANA;
        return japanese ? USCRIPT_JAPANESE : script;
    }

    UScriptCode m_script = USCRIPT_COMMON;
};

// The text from `begin` to `end`. `first` is the first token at or behind `begin`.
SpokenText words_of(
    const Utterance& utterance, std::size_t begin, std::size_t end, std::uint32_t first)
{
    const std::u16string_view text(utterance.text.data(), end);
    SpokenText words;
    ScriptWatch scripts;
    std::uint32_t token = first;
    for (std::size_t at = begin; at < end;) {
        while (token + 1 < utterance.tokens.size() && token_end(utterance, token) <= at)
            ++token;
        const char32_t character = safe_for_espeak(next_character(text, at));
        if (scripts.changes(character))
            words.append(" ", token);
        words.append(character, token);
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
        SpokenText words = words_of(utterance, begin, end, first);
        apply_context(words, utterance.style.context, english);
        if (!is_blank(words.utf8))
            pieces.emplace_back(std::move(words));
    };
    const SpeechStyle& style = utterance.style;
    for (std::uint32_t token = 0; token < utterance.tokens.size(); ++token) {
        const std::u16string_view text = token_text(utterance, token);
        if (!style.spell && !(style.speak_punctuation && is_mark(text)))
            continue;
        add_words(utterance.tokens[token].begin);
        pieces.emplace_back(NamedPiece{ characters_of(text), token });
        begin = token_end(utterance, token);
        first = token + 1;
    }
    add_words(utterance.text.size());
    return pieces;
}

} // namespace tessavox::voice
