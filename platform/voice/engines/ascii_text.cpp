#include "platform/voice/engines/ascii_text.h"

#include "platform/voice/engines/sign_names.h"

#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>

namespace tessavox::voice {

namespace {

// By rules of ICU, made at the first text that needs them because they cost some milliseconds.
std::string romanized(char32_t character)
{
    static const std::unique_ptr<icu::Transliterator> rules = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<icu::Transliterator>(icu::Transliterator::createInstance(
            "Any-Latin; NFKD; Latin-ASCII; [^\\u0020-\\u007E] Remove", UTRANS_FORWARD, status));
    }();
    icu::UnicodeString text(static_cast<UChar32>(character));
    if (rules)
        rules->transliterate(text);
    std::string ascii;
    text.toUTF8String(ascii);
    return std::ranges::all_of(ascii, [](char letter) { return letter >= 0x20; }) ? ascii
                                                                                  : std::string();
}

std::string ascii_of(char32_t character)
{
    if (character < 0x7F)
        return std::string(1, static_cast<char>(character));
    const auto category = u_charType(static_cast<UChar32>(character));
    if (category == U_OTHER_SYMBOL || category == U_MATH_SYMBOL || category == U_CURRENCY_SYMBOL)
        return ' ' + english_name(character) + ' ';
    if (u_isUWhiteSpace(static_cast<UChar32>(character)))
        return " ";
    return romanized(character);
}

// A character by its name, as a word of its own. Capitals, because the engine takes a small "a" for
// the article.
std::string spelled(char32_t character)
{
    std::string ascii = ascii_of(character);
    std::string words;
    for (const char letter : ascii) {
        const std::string name = english_name(static_cast<unsigned char>(letter));
        words += ' ';
        if (!name.empty())
            words += name;
        else
            words
                += letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return ascii.size() > 2 ? ascii : words;
}

bool is_blank(std::string_view ascii)
{
    return ascii.find_first_not_of(' ') == std::string_view::npos;
}

// A character of a token. What is left of no sound, and what flite passes over, has its name.
std::string said_in_token(char32_t character)
{
    std::string ascii = ascii_of(character);
    const bool passed_over = character == U'<' || character == U'>';
    return passed_over || is_blank(ascii) ? ' ' + english_name(character) + ' ' : ascii;
}

// Flite overruns a buffer over some hundreds of punctuation marks without a blank, and no word is
// as long as this.
SpokenText with_short_words(const SpokenText& text)
{
    constexpr int longest_word = 100;
    SpokenText result;
    int length = 0;
    for (std::size_t at = 0; at < text.utf8.size(); ++at) {
        length = text.utf8[at] == ' ' ? 0 : length + 1;
        if (length > longest_word) {
            result.append(" ", text.tokens[at]);
            length = 1;
        }
        result.append(text.utf8.substr(at, 1), text.tokens[at]);
    }
    return result;
}

SpokenText ascii_of(const Utterance& utterance, std::size_t begin, std::size_t end)
{
    const std::u16string_view text(utterance.text.data(), end);
    const SpeechStyle& style = utterance.style;
    SpokenText result;
    std::uint32_t token = 0;
    std::uint32_t named = static_cast<std::uint32_t>(-1); // the token that is being named
    for (std::size_t at = begin; at < end;) {
        while (token + 1 < utterance.tokens.size() && token_end(utterance, token) <= at)
            ++token;
        const bool inside = token < utterance.tokens.size() && utterance.tokens[token].begin <= at
            && at < token_end(utterance, token);
        const bool by_name = inside
            && (style.spell || (style.speak_punctuation && is_mark(token_text(utterance, token))));
        const char32_t character = next_harmless(text, at);
        if (named != static_cast<std::uint32_t>(-1) && (!by_name || named != token))
            result.append(" ", named);
        named = by_name ? token : static_cast<std::uint32_t>(-1);
        result.append(by_name ? spelled(character)
                : inside      ? said_in_token(character)
                              : ascii_of(character),
            token);
    }
    return result;
}

} // namespace

SpokenText ascii_text(const Utterance& utterance)
{
    SpokenText result;
    for (const ContextStretch& stretch : context_stretches(utterance, 0, utterance.text.size())) {
        SpokenText some = ascii_of(utterance, stretch.begin, stretch.end);
        apply_context(some, stretch.context, true);
        result.append(some);
    }
    return with_short_words(result);
}

std::vector<bool> silent_in_ascii(const Utterance& utterance)
{
    std::vector<bool> silent;
    for (std::uint32_t token = 0; token < utterance.tokens.size(); ++token) {
        const std::u16string_view text = token_text(utterance, token);
        bool said = false;
        for (std::size_t at = 0; at < text.size() && !said;)
            said = !is_blank(said_in_token(next_harmless(text, at)));
        silent.push_back(!said);
    }
    return silent;
}

} // namespace tessavox::voice
