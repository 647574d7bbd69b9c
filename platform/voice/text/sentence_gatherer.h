// Takes one sentence after the other off a marked-up text.
#pragma once

#include "platform/text.h"
#include "platform/voice/text/markup_scanner.h"
#include "platform/voice/text/markup_state.h"
#include "platform/voice/utterance.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace tessavox::voice {

/// Where the characters of a decoded text come from.
class SourceMap {
public:
    void clear() { m_segments.clear(); }
    /// `length` units at `text_begin` stand one for one for those at `source_begin`.
    void add(std::uint32_t text_begin, std::uint32_t source_begin);
    /// The units from `text_begin` up to the next call stand together for this extent.
    void add_entity(
        std::uint32_t text_begin, std::uint32_t source_begin, std::uint32_t source_length);

    /// Both take the index of a unit of the text. Rising questions are answered fastest.
    std::uint32_t begin_of(std::uint32_t unit) const;
    std::uint32_t end_of(std::uint32_t unit) const;

private:
    struct Segment {
        std::uint32_t text_begin = 0;
        std::uint32_t source_begin = 0;
        std::uint32_t source_length = 0; // of an entity; one_for_one otherwise
    };
    static constexpr std::uint32_t one_for_one = UINT32_MAX;
    const Segment& segment_of(std::uint32_t unit) const;

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
    MarkupSettingsPtr settings; // at its beginning
    SentenceExtent extent;
};

/// A place to gather from. The state is never null.
struct GatherPlace {
    std::uint32_t offset = 0;
    std::uint32_t cdata_end = 0; // 0: in no CDATA section
    MarkupStatePtr state;
};

/// What gather() takes depends on its place alone, so that a remembered place repeats it.
class SentenceGatherer {
public:
    SentenceGatherer(
        std::u16string_view source, bool markup, const VoiceChooser& voices, GatherPlace start);

    /// Takes the next sentence, or a lone pause or bookmark (then the sentence has no text and that
    /// one mark). False at the end of the text.
    bool gather(Sentence& sentence);

    const GatherPlace& place() const { return m_place; }

private:
    enum class Pending : std::uint8_t { none, terminator, wide_terminator };

    struct Checkpoint {
        GatherPlace place; // its state is null as long as it is that of m_place
        std::uint32_t text_size = 0;
        std::size_t marks = 0;
    };

    bool has_content() const;
    std::uint32_t span_end() const;
    std::uint32_t text_size() const;
    void step();
    void take_plain();
    void take_white();
    void take_terminator(Pending pending);
    void take_surrogate();
    void take_markup();
    void take_character(char32_t character, std::uint32_t end);
    void take_tag(const Markup& tag);
    void leave_cdata();
    void join();
    void speak_empty_pronunciation(TagEffect& effect);
    void add_item(decltype(SentenceMark::what) item, std::uint32_t begin);
    bool pending_ends(std::uint32_t next) const;
    bool ends_before(char16_t c);
    char16_t next_letter(std::uint32_t from) const;
    void begin_text(char16_t first);
    void append_linear(std::uint32_t length);
    void mark_text_end();
    void finish();
    void finish_at_text_end();
    void cut_if_endless();

    std::u16string_view m_source;
    bool m_markup;
    const VoiceChooser& m_voices;
    MarkupScanner m_scanner;
    GatherPlace m_place;

    Sentence* m_sentence = nullptr;
    bool m_finished = false;
    bool m_fresh = false; // something was spoken since the checkpoint
    bool m_joint = false; // markup was read since the last character
    bool m_white = false; // the last character is white space
    Pending m_pending = Pending::none;
    std::uint32_t m_line_ends = 0; // since the last character that is not white
    std::uint32_t m_gather_begin = 0; // where gather() began
    std::uint32_t m_begin = 0; // of the sentence itself
    Checkpoint m_text_end; // behind the last word before white space or markup
};

} // namespace tessavox::voice
