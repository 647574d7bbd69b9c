// What holds for the reading of any text whatsoever. A test asks it of the corpus, too.
#pragma once

#include "platform/voice/text/markup_scanner.h"
#include "tests/platform/voice/text/reading.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace tessavox::voice {

/// After a first byte UTF-8, or UTF-16 as it stands, lone surrogates included.
inline std::u16string text_of_bytes(std::string_view bytes)
{
    const bool utf16 = !bytes.empty() && (bytes[0] & 0xC0) == 0xC0;
    bytes.remove_prefix(std::min<std::size_t>(bytes.size(), 1));
    if (!utf16)
        return to_utf16(bytes);
    std::u16string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
        text.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[at])
            | static_cast<unsigned char>(bytes[at + 1]) << 8));
    return text;
}

class ReadingCheck {
public:
    ReadingCheck(std::u16string text, ReaderOptions options)
        : m_slice(std::move(text))
        , m_text(m_slice.view())
        , m_options(options)
    {
    }

    /// The first property that is broken, or an empty text.
    std::string broken()
    {
        TextReader reader(m_slice, m_options, two_voices);
        for (;;) {
            m_places.push_back(reader.place());
            auto item = reader.next();
            if (!item)
                break;
            if (const auto* utterance = std::get_if<Utterance>(&*item))
                check(*utterance);
            if (const auto* bookmark = std::get_if<Bookmark>(&*item))
                m_bookmarks.push_back(bookmark->name);
            m_items.push_back(std::move(*item));
        }
        deny(!m_ended, "the last sentence does not end");
        check_coverage();
        check_places();
        return m_broken;
    }

private:
    void deny(bool broken, const std::string& what)
    {
        if (broken && m_broken.empty())
            m_broken = what + " in: " + to_utf8(m_text.substr(0, 400));
    }

    void check(const Utterance& utterance)
    {
        deny(utterance.text.size() > 800, "an utterance is too long");
        deny(utterance.text.empty() && utterance.pronunciation.empty(), "an utterance is empty");
        deny(to_utf16(to_utf8(utterance.text)) != utterance.text, "a lone surrogate");
        for (const char16_t c : utterance.text)
            deny(c < 0x20 || (c >= 0x7F && c < 0xA0), "a control character");
        deny(utterance.sentence.has_value() != m_ended, "a sentence begins elsewhere");
        if (utterance.sentence) {
            const SentenceExtent& extent = *utterance.sentence;
            deny(extent.source_begin < m_sentence_end || extent.source_length == 0
                    || extent.source_begin + extent.source_length > m_text.size(),
                "a sentence lies wrong");
            m_sentence_end = extent.source_begin + extent.source_length;
            m_source_end = std::max(m_source_end, extent.source_begin);
        }
        check_marks(utterance);
        m_ended = utterance.ends_sentence;
        std::uint32_t text_end = 0;
        for (const Token& token : utterance.tokens) {
            check(utterance, token, text_end);
            text_end = token.begin + token.length;
        }
    }

    void check_marks(const Utterance& utterance)
    {
        const std::size_t tokens = utterance.tokens.size();
        std::uint32_t before = 0;
        for (const BookmarkPlace& bookmark : utterance.bookmarks) {
            deny(bookmark.token < before || bookmark.token > tokens, "a bookmark lies wrong");
            before = bookmark.token;
            m_bookmarks.push_back(bookmark.name);
        }
        std::int64_t level_before = -1;
        for (const LevelChange& change : utterance.levels) {
            deny(change.token <= level_before || change.token >= std::max<std::size_t>(tokens, 1),
                "a level lies wrong");
            level_before = change.token;
        }
        std::size_t end = 0;
        for (const ContextHint& hint : utterance.contexts) {
            deny(hint.begin < end || hint.length == 0, "contexts overlap or are empty");
            end = std::size_t{ hint.begin } + hint.length;
        }
        deny(end > utterance.text.size(), "a context lies outside its text");
    }

    void check(const Utterance& utterance, const Token& token, std::uint32_t text_end)
    {
        const std::uint32_t source_end = token.source_begin + token.source_length;
        deny(token.begin < text_end || token.begin + token.length > utterance.text.size(),
            "a word lies wrong");
        deny(token.length > 100, "a word is too long");
        deny(token.source_begin < m_source_end || token.source_length == 0
                || source_end > m_sentence_end,
            "a word lies outside its sentence");
        m_source_end = source_end;
        m_extents.push_back(token);
        if (token.length == 0)
            return;
        const auto source = m_text.substr(token.source_begin, token.source_length);
        const auto spoken = std::u16string_view(utterance.text).substr(token.begin, token.length);
        const bool decoded = m_options.markup && source.find(u'&') != source.npos;
        deny(!decoded && to_utf8(source) != to_utf8(spoken), "a word says something else");
    }

    /// Every letter and digit that is no part of markup lies in a word, and no bookmark is lost,
    /// doubled or moved past another.
    void check_coverage()
    {
        std::vector<std::string> written;
        MarkupScanner scanner(m_text);
        auto token = m_extents.begin();
        std::size_t cdata_end = 0;
        for (std::size_t at = 0; at < m_text.size(); ++at) {
            const char16_t c = m_text[at];
            if (m_options.markup && at >= cdata_end && (c == u'<' || c == u'&')) {
                const Markup markup = scanner.scan(at);
                cdata_end = std::max(cdata_end, markup.content_end);
                if (lower_ascii(to_utf8(markup.name)) == "bookmark"
                    && markup.kind != Markup::Kind::end_tag)
                    add_name(written, scanner.attributes());
                if (markup.kind != Markup::Kind::none)
                    at = markup.end - 1;
                continue;
            }
            while (token != m_extents.end() && token->source_begin + token->source_length <= at)
                ++token;
            const bool in_word = token != m_extents.end() && token->source_begin <= at;
            const bool word = (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z')
                || (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c < 0x180 && c != 0xD7 && c != 0xF7)
                || (c >= 0x4E00 && c < 0x9FFF);
            deny(word && !in_word, "the word at " + std::to_string(at) + " was skipped");
        }
        deny(m_bookmarks != written, "bookmarks are lost");
    }

    static void add_name(
        std::vector<std::string>& names, std::span<const MarkupAttribute> attributes)
    {
        for (const MarkupAttribute& attribute : attributes)
            if (lower_ascii(to_utf8(attribute.name)) == "mark")
                return names.push_back(to_utf8(decoded_value(attribute.value)));
    }

    void check_places()
    {
        const std::size_t step = std::max<std::size_t>(1, m_places.size() / 8);
        for (std::size_t from = 0; from < m_places.size(); from += step) {
            TextReader reader(m_slice, m_options, two_voices, m_places[from]);
            const std::size_t end = std::min(from + 2 * step + 4, m_items.size());
            for (std::size_t at = from; at < end; ++at) {
                const ReadingPlace place = reader.place();
                const auto item = reader.next();
                deny(!item || dump(*item) != dump(m_items[at]),
                    "item " + std::to_string(at) + " differs from there");
                deny(place.offset > m_text.size(), "a place lies outside the text");
            }
            deny(end == m_items.size() && reader.next().has_value(), "more items come");
        }
    }

    static std::string dump(const SpeechItem& item)
    {
        std::string all = told({ item });
        if (const auto* utterance = std::get_if<Utterance>(&item)) {
            for (const Token& token : utterance->tokens)
                for (const std::uint32_t number :
                    { token.begin, token.length, token.source_begin, token.source_length })
                    all += " " + std::to_string(number);
            if (utterance->sentence)
                all += " sentence " + std::to_string(utterance->sentence->source_begin) + " "
                    + std::to_string(utterance->sentence->source_length);
            all += utterance->ends_sentence ? " ends" : "";
        }
        return all;
    }

    TextSlice m_slice;
    std::u16string_view m_text;
    ReaderOptions m_options;
    std::vector<SpeechItem> m_items;
    std::vector<ReadingPlace> m_places;
    std::vector<Token> m_extents;
    std::vector<std::string> m_bookmarks;
    std::uint32_t m_source_end = 0; // of the last word
    std::uint32_t m_sentence_end = 0;
    bool m_ended = true;
    std::string m_broken;
};

} // namespace tessavox::voice
