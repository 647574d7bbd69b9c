// The second or so of sound between the thread that makes it and the one that plays it.
#pragma once

#include "platform/voice/sound/pcm_format.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessavox::voice {

/// Frames in a queue, each known by its number in the stream. Not thread-safe.
class SoundRing {
public:
    SoundRing(PcmFormat format, std::size_t capacity_frames);

    /// The frames that are in: from begin() up to, not including, end().
    std::uint64_t begin() const { return m_begin; }
    std::uint64_t end() const;
    std::size_t frames() const;
    /// Full is a wish, not a border: append() takes whatever it is given.
    bool full() const { return frames() >= m_capacity; }

    void append(std::span<const std::byte> frames);
    /// Moves at most `count` of the oldest frames to the end of `out`.
    void take(std::size_t count, std::vector<std::byte>& out);
    /// Drops the frames from `frame` on and lets the last `fade_frames` before it fade away.
    void truncate(std::uint64_t frame, std::size_t fade_frames);
    /// Drops everything; the next frame to be appended is `frame`.
    void restart(std::uint64_t frame);

private:
    PcmFormat m_format;
    std::size_t m_capacity;
    std::uint64_t m_begin = 0;
    std::size_t m_offset = 0; // bytes at the front of m_bytes that are taken already
    std::vector<std::byte> m_bytes;
};

} // namespace tessavox::voice
