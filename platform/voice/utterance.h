// What passes between the stages of the voice: from the text reader to an engine (Utterance), and
// from the engine to the sound (Rendering).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tessavox::voice {

/// How a stretch of text is spoken, as far as markup decides it and the engine must know.
struct SpeechStyle {
    int rate = 0; // added to the voice's own rate; the sum is clamped to -10..10
    int pitch = 0; // -10..10; each step is a factor of 2^(1/24)
    int voice = -1; // index in the voice catalogue; -1: the voice that Speak began with
    bool emphasis = false;
    bool spell = false; // every character but white space is a token of its own
    bool speak_punctuation = false; // punctuation marks are tokens too

    bool operator==(const SpeechStyle&) const = default;
};

/// One spoken word. `begin` and `length` index Utterance::text; the source fields index the text
/// given to Speak. All in UTF-16 code units.
struct Token {
    std::uint32_t begin = 0;
    std::uint32_t length = 0;
    std::uint32_t source_begin = 0;
    std::uint32_t source_length = 0;
};

/// The extent of a sentence in the text given to Speak, markup inside it included.
struct SentenceExtent {
    std::uint32_t source_begin = 0;
    std::uint32_t source_length = 0;
};

/// A bookmark that is reached when a token begins. One after the last token has their number.
struct BookmarkPlace {
    std::uint32_t token = 0;
    std::string name; // UTF-8
};

/// The loudness from a token on, in per cent of the voice's own.
struct LevelChange {
    std::uint32_t token = 0;
    int percent = 100;
};

/// What a stretch of Utterance::text is, for engines that read it better when they know.
struct ContextHint {
    std::uint32_t begin = 0;
    std::uint32_t length = 0;
    std::string context; // "date_mdy", "number_cardinal" ...
};

/// A sentence, or a piece of one, spoken in one style by one engine call. What markup says without
/// changing the style stands beside the text, so that it costs nothing that is heard.
struct Utterance {
    std::u16string text; // plain: no markup, no control characters, no lone surrogates
    std::vector<Token> tokens; // rising, not overlapping; may be empty
    std::string pronunciation; // phonemes that replace the text, parted by blanks; usually empty
    std::optional<SentenceExtent> sentence; // in the first utterance of each sentence
    bool ends_sentence = false; // the engine's pause between sentences belongs after it
    SpeechStyle style;
    std::vector<ContextHint> contexts; // rising, not overlapping
    std::vector<BookmarkPlace> bookmarks; // rising; no engine needs them
    std::vector<LevelChange> levels; // rising; 100 before the first; no engine needs them
};

struct Silence {
    std::uint32_t milliseconds = 0;
};

struct Bookmark {
    std::string name; // UTF-8
};

/// What the text reader yields, in reading order.
using SpeechItem = std::variant<Utterance, Silence, Bookmark>;

/// A token begins to sound at `frame` of the rendering.
struct WordMark {
    std::uint32_t token = 0; // index in Utterance::tokens; rising, each token exactly once
    std::uint64_t frame = 0; // never falls
    std::uint8_t silent = 0; // 1: nothing of the token is heard, so no event tells of it
};

/// A phone sounds from `frame` for `frames`.
struct PhoneMark {
    std::uint64_t frame = 0;
    std::uint64_t frames = 0;
    std::int16_t phone = 0; // the engine's own number for it; 0: none
    std::uint8_t viseme = 0; // 0..21
    std::uint8_t feature = 0; // 1 stressed, 2 emphasised
};

/// The sound of one utterance: 16-bit mono.
struct Rendering {
    int sample_rate = 0; // Hz
    std::vector<std::int16_t> samples;
    std::vector<WordMark> words;
    std::vector<PhoneMark> phones;
};

/// Sets each mark where `moved` says that its frame has gone, after the samples were moved.
template <class Moved> void move_marks(Rendering& rendering, Moved moved)
{
    for (WordMark& word : rendering.words)
        word.frame = moved(word.frame);
    for (PhoneMark& phone : rendering.phones) {
        const std::uint64_t end = moved(phone.frame + phone.frames);
        phone.frame = moved(phone.frame);
        phone.frames = end - phone.frame;
    }
}

} // namespace tessavox::voice
