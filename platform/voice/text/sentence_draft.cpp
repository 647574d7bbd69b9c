#include "platform/voice/text/sentence_draft.h"

#include "platform/voice/text/reading_character.h"

#include <memory>
#include <utility>

namespace tessavox::voice {

void SourceMap::add(std::uint32_t text_begin, std::uint32_t source_begin)
{
    if (!m_segments.empty()) {
        const Segment& last = m_segments.back();
        if (last.source_length == one_for_one
            && last.source_begin + (text_begin - last.text_begin) == source_begin)
            return;
    }
    m_segments.push_back({ text_begin, source_begin, one_for_one });
}

void SourceMap::add_entity(
    std::uint32_t text_begin, std::uint32_t source_begin, std::uint32_t source_length)
{
    m_segments.push_back({ text_begin, source_begin, source_length });
}

const SourceMap::Segment& SourceMap::segment_of(std::uint32_t unit) const
{
    if (m_last >= m_segments.size() || m_segments[m_last].text_begin > unit)
        m_last = 0;
    while (m_last + 1 < m_segments.size() && m_segments[m_last + 1].text_begin <= unit)
        ++m_last;
    return m_segments[m_last];
}

std::uint32_t SourceMap::begin_of(std::uint32_t unit) const
{
    const Segment& segment = segment_of(unit);
    const bool entity = segment.source_length != one_for_one;
    return segment.source_begin + (entity ? 0 : unit - segment.text_begin);
}

std::uint32_t SourceMap::end_of(std::uint32_t unit) const
{
    const Segment& segment = segment_of(unit);
    const bool entity = segment.source_length != one_for_one;
    return segment.source_begin + (entity ? segment.source_length : unit - segment.text_begin + 1);
}

void SentenceDraft::restart(Sentence& sentence)
{
    sentence.text.clear();
    sentence.map.clear();
    sentence.marks.clear();
    m_sentence = &sentence;
    m_word_end = {};
    m_fresh = m_joint = m_white = false;
}

void SentenceDraft::begin_text(char16_t first, const ReadingPlace& place)
{
    if (!has_content()) {
        m_sentence->settings = place.state->settings();
        m_begin = place.offset;
    } else if (m_joint && size() > 0 && is_wordish(m_sentence->text.back()) && is_wordish(first)) {
        append_entity(u" ", place.offset, 0);
    }
    m_joint = m_white = false;
    m_fresh = true;
}

void SentenceDraft::append(std::u16string_view units, std::uint32_t source_begin)
{
    m_sentence->map.add(size(), source_begin);
    m_sentence->text.append(units);
}

void SentenceDraft::append_entity(
    std::u16string_view units, std::uint32_t source_begin, std::uint32_t source_length)
{
    m_sentence->map.add_entity(size(), source_begin, source_length);
    m_sentence->text.append(units);
}

void SentenceDraft::append_white(std::uint32_t count, std::uint32_t source_begin)
{
    m_sentence->map.add(size(), source_begin);
    m_sentence->text.append(count, u' ');
    m_white = true;
}

void SentenceDraft::part_words()
{
    if (!has_content())
        return;
    m_joint = true;
    if (m_sentence->marks.empty() || m_sentence->marks.back().at != size())
        m_sentence->marks.push_back({ size(), {} });
}

void SentenceDraft::add_settings(const MarkupSettingsPtr& settings)
{
    if (has_content())
        m_sentence->marks.push_back({ size(), settings });
}

void SentenceDraft::add_item(
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

void SentenceDraft::mark_word_end(const ReadingPlace& place)
{
    if (std::exchange(m_fresh, false))
        mark_word_end_at(size(), place.offset, place.cdata_end);
}

void SentenceDraft::mark_word_end_at(
    std::uint32_t size, std::uint32_t offset, std::uint32_t cdata_end)
{
    m_word_end = { { offset, nullptr, cdata_end }, size, m_sentence->marks.size() };
}

void SentenceDraft::keep_state(const MarkupStatePtr& state)
{
    if (!m_word_end.place.state)
        m_word_end.place.state = state;
}

ReadingPlace SentenceDraft::finish(const ReadingPlace& place)
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

} // namespace tessavox::voice
