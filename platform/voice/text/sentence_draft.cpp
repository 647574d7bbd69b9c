#include "platform/voice/text/sentence_draft.h"

#include "platform/voice/text/reading_character.h"

#include <memory>
#include <utility>

namespace tessavox::voice {

void SentenceDraft::restart(Sentence& sentence)
{
    sentence.text.clear();
    sentence.map.clear();
    sentence.marks.clear();
    m_sentence = &sentence;
    m_word_end = {};
    m_fresh = m_joint = m_white = false;
}

void SentenceDraft::begin_text(char16_t first, const GatherPlace& place)
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
    decltype(SentenceMark::what) item, std::uint32_t source_begin, const GatherPlace& place)
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

void SentenceDraft::mark_word_end(const GatherPlace& place)
{
    if (std::exchange(m_fresh, false))
        mark_word_end_at(size(), place.offset, place.cdata_end);
}

void SentenceDraft::mark_word_end_at(
    std::uint32_t size, std::uint32_t offset, std::uint32_t cdata_end)
{
    m_word_end = { { offset, cdata_end, nullptr }, size, m_sentence->marks.size() };
}

void SentenceDraft::keep_state(const MarkupStatePtr& state)
{
    if (!m_word_end.place.state)
        m_word_end.place.state = state;
}

GatherPlace SentenceDraft::finish(const GatherPlace& place)
{
    m_sentence->text.resize(m_word_end.size);
    m_sentence->marks.resize(m_word_end.marks);
    keep_state(place.state);
    GatherPlace next = std::move(m_word_end.place);
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
