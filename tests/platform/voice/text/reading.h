// Reads a whole text and tells what came, in a form that tests compare and people read.
#pragma once

#include "platform/text.h"
#include "platform/voice/text/text_reader.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace tessavox::voice {

/// Has the voices "Anna" (1) and "Bert" (2); language 407 is Bert's.
struct TwoVoices : VoiceChooser {
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
    const auto tell = [&](bool differs, const std::string& part) {
        if (differs)
            told += (told.empty() ? "" : " ") + part;
    };
    tell(style.rate != 0, "rate=" + std::to_string(style.rate));
    tell(style.pitch != 0, "pitch=" + std::to_string(style.pitch));
    tell(style.voice != -1, "voice=" + std::to_string(style.voice));
    tell(style.emphasis, "emph");
    tell(style.spell, "spell");
    return told;
}

/// The text, with "{name}" where a bookmark is reached, "%50 " before the word from which on the
/// level is 50, and "date_mdy(1/2)" round a stretch with a context.
inline std::string marked_text(const Utterance& utterance)
{
    std::multimap<std::size_t, std::string> signs; // by their places in the text
    const auto place_of = [&](std::uint32_t token) {
        return token < utterance.tokens.size() ? utterance.tokens[token].begin
                                               : utterance.text.size();
    };
    for (const ContextHint& hint : utterance.contexts) {
        signs.emplace(hint.begin, hint.context + "(");
        signs.emplace(hint.begin + hint.length, ")");
    }
    for (const BookmarkPlace& bookmark : utterance.bookmarks)
        signs.emplace(place_of(bookmark.token), "{" + bookmark.name + "}");
    for (const LevelChange& change : utterance.levels)
        signs.emplace(place_of(change.token), "%" + std::to_string(change.percent) + " ");
    std::string told;
    std::size_t at = 0;
    for (const auto& [place, sign] : signs) {
        told += to_utf8(std::u16string_view(utterance.text).substr(at, place - at)) + sign;
        at = place;
    }
    return told + to_utf8(std::u16string_view(utterance.text).substr(at));
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
            std::string phonemes = utterance->pronunciation;
            std::ranges::replace(phonemes, ' ', '/');
            all += phonemes.empty() ? "" : "/" + phonemes + "/";
            all += marked_text(*utterance);
        }
    }
    return all;
}

enum class Extents { words, sentences };

/// Takes the brackets out of a text, reads it, and puts them round the words or sentences that are
/// told of it: a text comes back as it was if they stood in the right places.
inline std::string bracketed(std::u16string text, Extents which, ReaderOptions options = {})
{
    std::erase_if(text, [](char16_t unit) { return unit == u'[' || unit == u']'; });
    std::string told;
    std::size_t at = 0;
    const auto add = [&](std::uint32_t begin, std::uint32_t length) {
        const std::u16string_view all = text;
        told
            += to_utf8(all.substr(at, begin - at)) + "[" + to_utf8(all.substr(begin, length)) + "]";
        at = begin + length;
    };
    for (const SpeechItem& item : read_all(text, options)) {
        const auto* utterance = std::get_if<Utterance>(&item);
        if (utterance && which == Extents::words)
            for (const Token& token : utterance->tokens)
                add(token.source_begin, token.source_length);
        if (utterance && which == Extents::sentences && utterance->sentence)
            add(utterance->sentence->source_begin, utterance->sentence->source_length);
    }
    return told + to_utf8(text.substr(at));
}

} // namespace tessavox::voice
