// Reads a text given to Speak, markup included, and yields it sentence by sentence.
#pragma once

#include "platform/text.h"
#include "platform/voice/text/voice_chooser.h"
#include "platform/voice/utterance.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tessavox::voice {

/// The markup in force at some place: what an empty element has set for all following text, and the
/// stack of open elements. Immutable and shared, so that remembering one costs a pointer.
class MarkupState;
using MarkupStatePtr = std::shared_ptr<const MarkupState>;

/// A place in the text from which reading can go on.
struct ReadingPlace {
    std::uint32_t offset = 0; // UTF-16 code units
    MarkupStatePtr state; // null: nothing in force
    // The reader's own:
    std::uint32_t cdata_end = 0; // the place lies in a CDATA section that ends here; 0: in none
    std::uint32_t items_over = 0; // items of its sentence that are over
    std::uint32_t sentence_begin = 0; // if some are: where the sentence was gathered from
};

struct ReaderOptions {
    bool markup = true; // read tags; false: tags are spoken as text
    bool speak_punctuation = false;
};

/// Whether a text is markup when neither SVSFIsXML nor SVSFIsNotXML is given: its first character
/// is '<'.
bool looks_like_markup(std::u16string_view text);

/// A lazy reader: the constructor costs nothing, and each call of next() costs in proportion to the
/// item that it yields, wherever in the text it stands. One malformed tag costs no more than its
/// length, so a text of '<' alone is read in proportion to its length too.
class TextReader {
public:
    TextReader(TextSlice text, ReaderOptions options, const VoiceChooser& voices,
        const ReadingPlace& start = {});
    ~TextReader();
    TextReader(TextReader&&) noexcept;
    TextReader& operator=(TextReader&&) noexcept;

    /// The next item, or nothing at the end of the text. Never throws: malformed markup is spoken
    /// as text. An utterance holds at most 800 code units of text and no word over 100.
    std::optional<SpeechItem> next();

    /// Where the item that next() would yield begins. Reading from there yields the same items.
    ReadingPlace place() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace tessavox::voice
