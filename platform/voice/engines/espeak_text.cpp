#include "platform/voice/engines/espeak_text.h"

#include "platform/voice/engines/espeak_gaps.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <string_view>

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

// espeak-ng changes its language for a word in another script. Where such a word holds a character
// that this language doesn't know, such as a letter of a third script or an apostrophe, it goes on
// in memory that it has freed. A blank between the two makes them two words.
class ScriptWatch {
public:
    // Whether `character` must be parted from what stood before it.
    bool changes(char32_t character)
    {
        if (character == U' ') {
            m_kind = neutral;
            return false;
        }
        const int kind = kind_of(character);
        if (kind == neutral)
            return false;
        const bool joined = (kind == stranger && may_hold_stranger(m_kind))
            || (m_kind == stranger && may_hold_stranger(kind));
        const bool changed = m_kind != neutral && m_kind != kind && !joined;
        if (!joined || kind != stranger)
            m_kind = kind;
        return changed;
    }

private:
    // A script, or one of these.
    static constexpr int neutral = -1; // punctuation, digits, marks above and below letters
    static constexpr int stranger = -2; // apostrophes, signs and modifiers

    // Cyrillic and Hebrew words often hold an apostrophe, and the library bears it.
    static bool may_hold_stranger(int kind)
    {
        return kind == USCRIPT_LATIN || kind == USCRIPT_CYRILLIC || kind == USCRIPT_HEBREW
            || kind == USCRIPT_ARABIC;
    }

    static int kind_of(char32_t character)
    {
        constexpr std::u32string_view apostrophes = U"'\u2018\u2019\u02BC\uFF07";
        if (apostrophes.find(character) != std::u32string_view::npos)
            return stranger;
        const auto point = static_cast<UChar32>(character);
        UErrorCode status = U_ZERO_ERROR;
        const UScriptCode script = uscript_getScript(point, &status);
        if (script == USCRIPT_COMMON || script == USCRIPT_INHERITED) {
            const bool usual
                = u_ispunct(point) || u_isdigit(point) || (U_GET_GC_MASK(point) & U_GC_M_MASK) != 0;
            return usual || character < 0x80 ? neutral : stranger;
        }
        // A Japanese word mixes three scripts.
        const bool japanese
            = script == USCRIPT_HAN || script == USCRIPT_HIRAGANA || script == USCRIPT_KATAKANA;
        return japanese ? USCRIPT_JAPANESE : script;
    }

    int m_kind = neutral;
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
