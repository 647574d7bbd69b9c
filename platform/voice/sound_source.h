// Where the sound of a stream comes from: a text that is spoken, or a wave file that is played.
#pragma once

#include "platform/voice/stream_event.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tessavox::voice {

/// A short stretch of a stream, in whole frames of its format, and what happens in it.
struct Piece {
    std::vector<std::byte> sound;
    std::vector<StreamEvent> events;

    bool empty() const { return sound.empty() && events.empty(); }
    void clear()
    {
        sound.clear();
        events.clear();
    }
};

/// Makes a stream piece by piece, a text sentence by sentence. Used on the synthesis worker.
class SoundSource {
public:
    virtual ~SoundSource() = default;

    /// Appends the next piece. Returns false when everything is made. As soon as `interrupted`
    /// returns true it comes back without a piece; the next call goes on where this one was.
    virtual bool next(Piece& piece, const std::function<bool()>& interrupted) = 0;

    /// What was made before `frame` cannot be taken back any more.
    virtual void settle(std::uint64_t /*frame*/) { }

    /// The sound up to `frame` was heard and the rest of what was made is void: the next piece is
    /// heard from there on, and is the sentence that stands so many after the one heard there.
    virtual void skip(int /*sentences*/, std::uint64_t /*frame*/) { }

    /// A place from which on everything that was made can be made anew.
    struct Cut {
        std::uint64_t frame = 0;
        std::uint64_t sequence = 0; // the first event that is void; earlier ones stay
        std::size_t segment = 0; // which of what was made, and which of its words: the source's own
        std::size_t word = 0;
    };
    /// The rate has changed. The first place at or after `frame` that was made at another rate;
    /// nothing if there is none. What is not made yet takes the new rate.
    virtual std::optional<Cut> follow_rate(std::uint64_t /*frame*/) { return std::nullopt; }
    /// What was made from there on is void, and made anew.
    virtual void take_back(const Cut& /*cut*/) { }
};

} // namespace tessavox::voice
