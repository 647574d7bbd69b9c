#include "platform/voice/text/text_reader.h"

#include "platform/voice/text/sentence_gatherer.h"
#include "platform/voice/text/utterance_composer.h"

#include <utility>
#include <vector>

namespace tessavox::voice {

bool looks_like_markup(std::u16string_view text)
{
    return text.starts_with(u'<');
}

/// Gathers a sentence at a time. A place inside a sentence is remembered as where its gathering
/// began and how many of its items are over, so that going on there repeats every decision.
class TextReader::Impl {
public:
    Impl(TextSlice text, ReaderOptions options, const VoiceChooser& voices,
        const ReadingPlace& start)
        : m_text(std::move(text))
        , m_gatherer(m_text.view(), options.markup, voices, gather_place(start))
        , m_composer(options.speak_punctuation)
        , m_sentence_place(m_gatherer.place())
        , m_to_skip(start.state ? start.state->resumption().items_to_skip : 0)
        , m_start_offset(start.offset)
    {
    }

    std::optional<SpeechItem> next()
    {
        while (m_next >= m_items.size()) {
            if (!read_sentence())
                return std::nullopt;
        }
        return std::move(m_items[m_next++].item);
    }

    ReadingPlace place() const
    {
        const bool inside = m_next < m_items.size() && m_next > 0;
        if (inside)
            return place_in_sentence(m_items[m_next].source_begin, m_next);
        if (m_to_skip > 0)
            return place_in_sentence(m_start_offset, m_to_skip);
        const GatherPlace& at = m_next < m_items.size() ? m_sentence_place : m_gatherer.place();
        if (at.cdata_end == 0 && at.state->resumption().items_to_skip == 0
            && at.state->resumption().cdata_end == 0)
            return { at.offset, at.state };
        return { at.offset, at.state->with_resumption({ at.cdata_end, at.offset, 0 }) };
    }

private:
    static GatherPlace gather_place(const ReadingPlace& start)
    {
        if (!start.state)
            return { start.offset, 0, MarkupState::initial() };
        const Resumption& resumption = start.state->resumption();
        const bool inside = resumption.items_to_skip > 0;
        return { inside ? resumption.sentence_begin : start.offset, resumption.cdata_end,
            start.state };
    }

    ReadingPlace place_in_sentence(std::uint32_t offset, std::size_t items_over) const
    {
        return { offset,
            m_sentence_place.state->with_resumption({ m_sentence_place.cdata_end,
                m_sentence_place.offset, static_cast<std::uint32_t>(items_over) }) };
    }

    bool read_sentence()
    {
        m_items.clear();
        m_next = 0;
        m_sentence_place = m_gatherer.place();
        if (!m_gatherer.gather(m_sentence))
            return false;
        m_composer.compose(m_sentence, m_items);
        m_next = std::exchange(m_to_skip, 0);
        return true;
    }

    TextSlice m_text;
    SentenceGatherer m_gatherer;
    UtteranceComposer m_composer;
    Sentence m_sentence;
    GatherPlace m_sentence_place; // where the sentence of m_items was gathered from
    std::vector<PlacedItem> m_items;
    std::size_t m_next = 0;
    std::size_t m_to_skip = 0; // items of the first sentence that were over at the start
    std::uint32_t m_start_offset = 0;
};

TextReader::TextReader(
    TextSlice text, ReaderOptions options, const VoiceChooser& voices, const ReadingPlace& start)
    : m_impl(std::make_unique<Impl>(std::move(text), options, voices, start))
{
}

TextReader::~TextReader() = default;
TextReader::TextReader(TextReader&&) noexcept = default;
TextReader& TextReader::operator=(TextReader&&) noexcept = default;

std::optional<SpeechItem> TextReader::next()
{
    return m_impl->next();
}

ReadingPlace TextReader::place() const
{
    return m_impl->place();
}

} // namespace tessavox::voice
