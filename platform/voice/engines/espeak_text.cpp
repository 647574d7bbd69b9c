#include "platform/voice/engines/espeak_text.h"

#include "platform/text.h"
#include "platform/voice/engines/espeak_words.h"
#include "platform/voice/engines/sign_names.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>

namespace tessavox::voice {

namespace {

// Signs that the library passes over in a text, although it has their names in many languages.
constexpr std::u32string_view named_alone = U"<>|\u00A6\u2030";

std::u32string characters_of(std::u16string_view text)
{
    std::u32string characters;
    for (std::size_t at = 0; at < text.size();)
        characters += safe_for_espeak(next_harmless(text, at));
    return characters;
}

bool is_letter_or_digit(char32_t character)
{
    return u_isalnum(static_cast<UChar32>(character));
}

// "Hello" and "1/2" are none, an emoji of several characters is one.
bool is_sign(std::u32string_view token)
{
    return !token.empty() && std::ranges::none_of(token, is_letter_or_digit);
}

bool stands_without_blanks(char32_t character)
{
    UErrorCode status = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(static_cast<UChar32>(character), &status);
    return U_SUCCESS(status) && uscript_breaksBetweenLetters(script);
}

// Whether the library must be shown that a token ends between these two.
bool must_be_parted(char32_t before, char32_t after)
{
    const auto is_emoji
        = [](char32_t character) { return character >= 0x2000 && !is_letter_or_digit(character); };
    return stands_without_blanks(before) || stands_without_blanks(after) || is_emoji(before)
        || is_emoji(after);
}

// Calls append(character, place) for each, and for a blank where the library can't bear a word
// whole.
template <class Append> void append_parted(std::u32string_view characters, const Append& append)
{
    const std::vector<bool> breaks = breaks_for_espeak(characters);
    for (std::size_t at = 0; at < characters.size(); ++at) {
        if (breaks[at])
            append(U' ', at);
        append(characters[at], at);
    }
}

/// How a token is said.
enum class Manner {
    as_text,
    by_name, // each character by the name that the library has for it
    in_english, // a sign by its English name
    not_at_all
};

class Composer {
public:
    Composer(const Utterance& utterance, bool english, const PassesOver& passes_over)
        : m_utterance(utterance)
        , m_english(english)
        , m_passes_over(passes_over)
    {
    }

    EspeakText compose()
    {
        const auto count = static_cast<std::uint32_t>(m_utterance.tokens.size());
        for (std::uint32_t token = 0; token < count; ++token)
            m_manners.push_back(manner_of(token_text(m_utterance, token)));
        std::size_t begin = 0;
        std::uint32_t first = 0;
        for (std::uint32_t token = 0; token < count; ++token) {
            if (m_manners[token] != Manner::by_name)
                continue;
            add_words(begin, m_utterance.tokens[token].begin, first);
            add_names(token);
            begin = token_end(m_utterance, token);
            first = token + 1;
        }
        add_words(begin, m_utterance.text.size(), first);
        return { std::move(m_pieces), silent_tokens() };
    }

private:
    Manner manner_of(std::u16string_view text) const
    {
        const SpeechStyle& style = m_utterance.style;
        if (style.spell || (style.speak_punctuation && is_mark(text)))
            return Manner::by_name;
        const std::u32string characters = characters_of(text);
        if (!is_sign(characters) || !m_passes_over(safe_utf8(text)))
            return Manner::as_text;
        if (m_english && !english_names(characters).empty())
            return Manner::in_english;
        return named_alone.find(characters[0]) != named_alone.npos ? Manner::by_name
                                                                   : Manner::not_at_all;
    }

    // The text from `begin` to `end`. `first` is the first token that ends after `begin`.
    void add_words(std::size_t begin, std::size_t end, std::uint32_t first)
    {
        SpokenText words;
        for (const ContextStretch& stretch : context_stretches(m_utterance, begin, end)) {
            SpokenText some = words_of(stretch.begin, stretch.end, first);
            apply_context(some, stretch.context, m_english);
            words.append(some);
        }
        if (words.utf8.find_first_not_of(' ') != std::string::npos)
            m_pieces.emplace_back(std::move(words));
    }

    SpokenText words_of(std::size_t begin, std::size_t end, std::uint32_t token) const
    {
        const std::u16string_view text(m_utterance.text.data(), end);
        std::u32string characters;
        std::vector<std::uint32_t> tokens;
        const auto add = [&](char32_t character) {
            characters += character;
            tokens.push_back(token);
        };
        for (std::size_t at = begin; at < end;) {
            bool follows_token = false;
            while (token + 1 < m_utterance.tokens.size() && token_end(m_utterance, token) <= at) {
                follows_token = token_end(m_utterance, token) == at;
                ++token;
            }
            const bool starts = token < m_manners.size() && m_utterance.tokens[token].begin == at;
            const char32_t character = safe_for_espeak(next_harmless(text, at));
            if (starts && follows_token && must_be_parted(characters.back(), character))
                add(U' ');
            if (!starts || m_manners[token] == Manner::as_text) {
                add(character);
                continue;
            }
            at = std::max(at, std::min(token_end(m_utterance, token), end));
            for (const char letter : said_for(token))
                add(static_cast<unsigned char>(letter));
        }
        SpokenText words;
        append_parted(characters,
            [&](char32_t character, std::size_t at) { words.append(character, tokens[at]); });
        return words;
    }

    std::string said_for(std::uint32_t token) const
    {
        if (m_manners[token] == Manner::not_at_all)
            return " ";
        return ' ' + english_names(characters_of(token_text(m_utterance, token))) + ' ';
    }

    std::vector<bool> silent_tokens() const
    {
        std::vector<bool> silent;
        for (std::uint32_t token = 0; token < m_manners.size(); ++token)
            silent.push_back(m_manners[token] == Manner::not_at_all
                || characters_of(token_text(m_utterance, token)).find_first_not_of(U' ')
                    == std::u32string::npos);
        return silent;
    }

    void add_names(std::uint32_t token)
    {
        std::u32string characters = characters_of(token_text(m_utterance, token));
        // A row of one sign is said once.
        if (!m_utterance.style.spell && !m_utterance.style.speak_punctuation)
            characters.resize(1);
        m_pieces.emplace_back(NamedPiece{ std::move(characters), token });
    }

    const Utterance& m_utterance;
    bool m_english;
    const PassesOver& m_passes_over;
    std::vector<Manner> m_manners; // of each token
    std::vector<EspeakPiece> m_pieces;
};

} // namespace

std::string safe_utf8(std::u16string_view text)
{
    std::string utf8;
    append_parted(characters_of(text),
        [&](char32_t character, std::size_t) { append_character(utf8, character); });
    return utf8;
}

EspeakText espeak_text(const Utterance& utterance, bool english, const PassesOver& passes_over)
{
    return Composer(utterance, english, passes_over).compose();
}

} // namespace tessavox::voice
