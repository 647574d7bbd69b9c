// What happens in a stream of speech, and at which of its frames.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace tessavox::voice {

struct StreamStarted { };
struct StreamEnded { };
struct VoiceChanged {
    int voice = -1; // index in the catalogue
};
struct BookmarkReached {
    std::string name;
};
struct WordStarted {
    std::int32_t position = 0; // UTF-16 code units of the text given to Speak
    std::int32_t length = 0;
};
struct SentenceStarted {
    std::int32_t position = 0;
    std::int32_t length = 0;
};
struct PhonemeStarted {
    std::int32_t milliseconds = 0;
    std::int16_t next = 0;
    std::int32_t feature = 0;
    std::int16_t current = 0;
};
struct VisemeStarted {
    std::int32_t milliseconds = 0;
    std::int32_t next = 0;
    std::int32_t feature = 0;
    std::int32_t current = 0;
};
struct LevelMeasured {
    std::int32_t level = 0; // 0..100
};

using Happening = std::variant<StreamStarted, StreamEnded, VoiceChanged, BookmarkReached,
    WordStarted, SentenceStarted, PhonemeStarted, VisemeStarted, LevelMeasured>;

struct StreamEvent {
    std::uint64_t frame = 0; // of the output, counted from the start of the stream
    std::uint64_t sequence = 0; // rises in the order in which the text was worked through
    Happening happening;
};

} // namespace tessavox::voice
