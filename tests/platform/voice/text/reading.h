// Reads a whole text and tells what came, in a form that tests compare and people read.
#pragma once

#include "platform/text.h"
#include "platform/voice/text/text_reader.h"

#include <string>
#include <vector>

namespace tessavox::voice {

/// Has the voices "Anna" (1) and "Bert" (2); language 407 is Bert's.
class TwoVoices : public VoiceChooser {
public:
    std::optional<int> choose(
        std::string_view required, std::string_view optional, int current) const override
    {
        for (const std::string_view wish : { required, optional }) {
            if (wish.find("Anna") != wish.npos)
                return 1;
            if (wish.find("Bert") != wish.npos || wish == "Language=407")
                return 2;
        }
        return required.empty() ? std::optional(current) : std::nullopt;
    }
};

inline const TwoVoices two_voices;

inline std::vector<SpeechItem> read_all(
    const TextSlice& text, ReaderOptions options = {}, ReadingPlace start = {})
{
    std::vector<SpeechItem> items;
    TextReader reader(text, options, two_voices, std::move(start));
    while (auto item = reader.next())
        items.push_back(std::move(*item));
    return items;
}

/// What differs from the ordinary style: "rate=3 emph".
inline std::string style_of(const SpeechStyle& style)
{
    std::string told;
    const auto tell = [&](const std::string& part) { told += (told.empty() ? "" : " ") + part; };
    if (style.rate)
        tell("rate=" + std::to_string(style.rate));
    if (style.pitch)
        tell("pitch=" + std::to_string(style.pitch));
    if (style.voice != -1)
        tell("voice=" + std::to_string(style.voice));
    if (style.emphasis)
        tell("emph");
    if (style.spell)
        tell("spell");
    return told;
}

/// The text, with "{name}" where a bookmark is reached, "%50 " before the word from which on the
/// level is 50, and "date_mdy(1/2)" round a stretch with a context.
inline std::string marked_text(const Utterance& utterance)
{
    std::string told;
    std::size_t at = 0;
    const auto text_to = [&](std::size_t end) {
        told += to_utf8(std::u16string_view(utterance.text).substr(at, end - at));
        at = end;
    };
    auto hint = utterance.contexts.begin();
    const auto contexts_to = [&](std::size_t end) {
        for (; hint != utterance.contexts.end() && hint->begin <= end; ++hint) {
            text_to(hint->begin);
            told += hint->context + "(";
            text_to(hint->begin + hint->length);
            told += ")";
        }
    };
    for (std::uint32_t token = 0; token <= utterance.tokens.size(); ++token) {
        const bool end = token == utterance.tokens.size();
        const std::size_t begin = end ? utterance.text.size() : utterance.tokens[token].begin;
        contexts_to(begin);
        if (at < begin)
            text_to(begin);
        for (const BookmarkPlace& bookmark : utterance.bookmarks)
            if (bookmark.token == token)
                told += "{" + bookmark.name + "}";
        for (const LevelChange& change : utterance.levels)
            if (change.token == token)
                told += "%" + std::to_string(change.percent) + " ";
    }
    return told;
}

/// "[rate=3]slow text|(500)|{mark}": style, text and items in their order.
inline std::string told(const std::vector<SpeechItem>& items)
{
    std::string all;
    for (const SpeechItem& item : items) {
        all += all.empty() ? "" : "|";
        if (const auto* silence = std::get_if<Silence>(&item))
            all += "(" + std::to_string(silence->milliseconds) + ")";
        if (const auto* bookmark = std::get_if<Bookmark>(&item))
            all += "{" + bookmark->name + "}";
        if (const auto* utterance = std::get_if<Utterance>(&item)) {
            const std::string style = style_of(utterance->style);
            all += style.empty() ? "" : "[" + style + "]";
            for (const std::string& phoneme : utterance->pronunciation)
                all += "/" + phoneme;
            all += utterance->pronunciation.empty() ? "" : "/";
            all += marked_text(*utterance);
        }
    }
    return all;
}

/// The words, as the extents that the text given to Speak has for them.
inline std::vector<std::string> source_words(
    const TextSlice& text, const std::vector<SpeechItem>& items)
{
    std::vector<std::string> words;
    for (const SpeechItem& item : items) {
        if (const auto* utterance = std::get_if<Utterance>(&item)) {
            for (const Token& token : utterance->tokens)
                words.push_back(
                    to_utf8(text.view().substr(token.source_begin, token.source_length)));
        }
    }
    return words;
}

/// The sentences, as the extents that the text given to Speak has for them.
inline std::vector<std::string> source_sentences(
    const TextSlice& text, const std::vector<SpeechItem>& items)
{
    std::vector<std::string> sentences;
    for (const SpeechItem& item : items) {
        const auto* utterance = std::get_if<Utterance>(&item);
        if (utterance && utterance->sentence)
            sentences.push_back(to_utf8(text.view().substr(
                utterance->sentence->source_begin, utterance->sentence->source_length)));
    }
    return sentences;
}

} // namespace tessavox::voice
