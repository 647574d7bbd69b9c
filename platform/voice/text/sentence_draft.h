// A sentence, and how it grows while a text is read.
#pragma once

#include "platform/voice/text/markup_state.h"
#include "platform/voice/text/reading_character.h"
#include "platform/voice/utterance.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tessavox::voice {

/// The way back from a decoded text to the text given to Speak.
class SourceMap {
public:
    void clear() { m_segments.clear(); }
    /// The units from `text_begin` on stand one for one for those at `source_begin`.
    void add(std::uint32_t text_begin, std::uint32_t source_begin)
    {
        if (!m_segments.empty()) {
            const Segment& last = m_segments.back();
            if (last.source_length == one_for_one
                && last.source_begin + (text_begin - last.text_begin) == source_begin)
                return;
        }
        m_segments.push_back({ text_begin, source_begin, one_for_one });
    }
    /// The units from `text_begin` up to the next call stand together for this extent.
    void add_entity(
        std::uint32_t text_begin, std::uint32_t source_begin, std::uint32_t source_length)
    {
        m_segments.push_back({ text_begin, source_begin, source_length });
    }

    /// Both take the index of a unit of the text. Rising questions are answered fastest.
    std::uint32_t begin_of(std::uint32_t unit) const
    {
        const Segment& segment = segment_of(unit);
        const bool entity = segment.source_length != one_for_one;
        return segment.source_begin + (entity ? 0 : unit - segment.text_begin);
    }
    std::uint32_t end_of(std::uint32_t unit) const
    {
        const Segment& segment = segment_of(unit);
        const bool entity = segment.source_length != one_for_one;
        return segment.source_begin
            + (entity ? segment.source_length : unit - segment.text_begin + 1);
    }

private:
    struct Segment {
        std::uint32_t text_begin = 0;
        std::uint32_t source_begin = 0;
        std::uint32_t source_length = 0; // of an entity; one_for_one otherwise
    };
    static constexpr std::uint32_t one_for_one = UINT32_MAX;
    const Segment& segment_of(std::uint32_t unit) const
    {
        if (m_last >= m_segments.size() || m_segments[m_last].text_begin > unit)
            m_last = 0;
        while (m_last + 1 < m_segments.size() && m_segments[m_last + 1].text_begin <= unit)
            ++m_last;
        return m_segments[m_last];
    }

    std::vector<Segment> m_segments;
    mutable std::size_t m_last = 0;
};

/// Something between two characters of a sentence. Words end at every mark.
struct SentenceMark {
    std::uint32_t at = 0; // offset in Sentence::text
    /// Plain markup without effect; settings from here on; or an item spoken here.
    std::variant<std::monostate, MarkupSettingsPtr, Silence, Bookmark, PronunciationPtr> what;
};

/// A sentence, decoded: no markup, no control character, no lone surrogate, no long blanks.
struct Sentence {
    std::u16string text;
    SourceMap map;
    std::vector<SentenceMark> marks; // rising
    MarkupSettingsPtr settings; // at its start
    SentenceExtent extent;
};

/// Remembers where the last word ended: the sentence ends there, and the white space and markup
/// after it belong to the next one. The places given are those where the text is read; their state
/// is never null.
class SentenceDraft {
public:
    void restart(Sentence& sentence)
    {
        sentence.text.clear();
        sentence.map.clear();
        sentence.marks.clear();
        m_sentence = &sentence;
        m_word_end = {};
        m_fresh = m_joint = m_white = false;
    }

    bool has_content() const { return !m_sentence->text.empty() || !m_sentence->marks.empty(); }
    std::uint32_t size() const { return static_cast<std::uint32_t>(m_sentence->text.size()); }
    std::u16string_view text() const { return m_sentence->text; }
    /// Where in the source it begins.
    std::uint32_t begin() const { return m_begin; }
    bool ends_white() const { return m_white; }
    /// Whether markup was read since the last character.
    bool is_joint() const { return m_joint; }
    /// The size of the text, and the place in the source, where the last word ended.
    std::uint32_t size_at_word_end() const { return m_word_end.size; }
    std::uint32_t word_end() const { return m_word_end.place.offset; }

    /// The character `first`, which is read next, belongs to the sentence and is not white space.
    void begin_text(char16_t first, const ReadingPlace& place)
    {
        if (!has_content()) {
            m_sentence->settings = place.state->settings();
            m_begin = place.offset;
        } else if (m_joint && size() > 0 && is_wordish(m_sentence->text.back())
            && is_wordish(first)) {
            append_entity(u" ", place.offset, 0);
        }
        m_joint = m_white = false;
        m_fresh = true;
    }
    /// `units` as they stand in the source.
    void append(std::u16string_view units, std::uint32_t source_begin)
    {
        m_sentence->map.add(size(), source_begin);
        m_sentence->text.append(units);
    }
    /// `units` stand for this extent of the source.
    void append_entity(
        std::u16string_view units, std::uint32_t source_begin, std::uint32_t source_length)
    {
        m_sentence->map.add_entity(size(), source_begin, source_length);
        m_sentence->text.append(units);
    }
    /// `count` blanks for the white space in the source.
    void append_white(std::uint32_t count, std::uint32_t source_begin)
    {
        m_sentence->map.add(size(), source_begin);
        m_sentence->text.append(count, u' ');
        m_white = true;
    }
    void set_ends_white(bool white) { m_white = white; }

    /// Markup stands here: a word ends.
    void part_words()
    {
        if (!has_content())
            return;
        m_joint = true;
        if (m_sentence->marks.empty() || m_sentence->marks.back().at != size())
            m_sentence->marks.push_back({ size(), {} });
    }
    void add_settings(const MarkupSettingsPtr& settings)
    {
        if (has_content())
            m_sentence->marks.push_back({ size(), settings });
    }
    /// Adds an item that `place` comes after; `source_begin` is where the item's own markup begins.
    void add_item(
        decltype(SentenceMark::what) item, std::uint32_t source_begin, const ReadingPlace& place)
    {
        if (const auto* pronunciation = std::get_if<PronunciationPtr>(&item)) {
            source_begin = (*pronunciation)->source_begin;
            m_fresh = true;
        }
        if (!has_content()) {
            m_sentence->settings = place.state->settings();
            m_begin = source_begin;
            m_sentence->extent = { m_begin, place.offset - m_begin };
        }
        m_sentence->marks.push_back({ size(), std::move(item) });
    }

    /// What was spoken so far ends at `place`.
    void mark_word_end(const ReadingPlace& place)
    {
        if (std::exchange(m_fresh, false))
            mark_word_end_at(size(), place.offset, place.cdata_end);
    }
    /// A word ended in the midst of what was appended last, where the text had this size.
    void mark_word_end_at(std::uint32_t size, std::uint32_t offset, std::uint32_t cdata_end)
    {
        m_word_end = { { offset, nullptr, cdata_end }, size, m_sentence->marks.size() };
    }
    /// The state at the last word's end was `state`, which changes now.
    void keep_state(const MarkupStatePtr& state)
    {
        if (!m_word_end.place.state)
            m_word_end.place.state = state;
    }

    /// Ends the sentence with its last word. Returns where the next one is gathered from.
    ReadingPlace finish(const ReadingPlace& place)
    {
        m_sentence->text.resize(m_word_end.size);
        m_sentence->marks.resize(m_word_end.marks);
        keep_state(place.state);
        ReadingPlace next = std::move(m_word_end.place);
        m_sentence->extent = { m_begin, next.offset - m_begin };
        if (next.state->settings()->pronunciation) {
            // Phonemes stand for one sentence at most: a forgotten end tag must not silence a book.
            MarkupSettings settings = *next.state->settings();
            settings.pronunciation = nullptr;
            next.state = MarkupState::changed(
                next.state, std::make_shared<const MarkupSettings>(std::move(settings)));
        }
        return next;
    }

private:
    struct WordEnd {
        ReadingPlace place; // its state is null as long as it is that of the text being read
        std::uint32_t size = 0;
        std::size_t marks = 0;
    };

    Sentence* m_sentence = nullptr;
    std::uint32_t m_begin = 0;
    WordEnd m_word_end;
    bool m_fresh = false; // something was spoken since the word end
    bool m_joint = false;
    bool m_white = false;
};

} // namespace tessavox::voice
