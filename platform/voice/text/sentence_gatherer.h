// Takes one sentence after the other off a marked-up text.
#pragma once

#include "platform/voice/text/markup_scanner.h"
#include "platform/voice/text/markup_state.h"
#include "platform/voice/text/sentence_draft.h"
#include "platform/voice/text/voice_chooser.h"

#include <cstdint>
#include <string_view>

namespace tessavox::voice {

/// What gather() takes depends on its place alone, so that a remembered place repeats it.
class SentenceGatherer {
public:
    SentenceGatherer(
        std::u16string_view source, bool markup, const VoiceChooser& voices, ReadingPlace start);

    /// Takes the next sentence, or a lone pause or bookmark (then the sentence has no text and that
    /// one mark). False at the end of the text.
    bool gather(Sentence& sentence);

    const ReadingPlace& place() const { return m_place; }

private:
    enum class Pending : std::uint8_t { none, terminator, wide_terminator };

    std::uint32_t span_end() const;
    void step();
    void take_plain();
    void take_white();
    void take_terminator(Pending pending);
    void take_surrogate();
    void take_markup();
    void take_character(char32_t character, std::uint32_t end);
    void take_tag(const Markup& tag);
    void leave_cdata();
    void speak_empty_pronunciation(TagEffect& effect);
    void add_item(decltype(SentenceMark::what) item, std::uint32_t begin);
    bool pending_ends(std::uint32_t next) const;
    bool ends_before(char16_t c);
    void take_units(std::uint32_t count);
    void finish();
    void finish_at_word_end();
    void cut_if_endless();

    std::u16string_view m_source;
    bool m_markup;
    const VoiceChooser& m_voices;
    MarkupScanner m_scanner;
    ReadingPlace m_place;

    SentenceDraft m_draft;
    bool m_finished = false;
    Pending m_pending = Pending::none; // a mark that ends the sentence, if what follows agrees
    std::uint32_t m_line_ends = 0; // since the last character that is not white
    std::uint32_t m_gather_begin = 0; // where gather() began
};

} // namespace tessavox::voice
