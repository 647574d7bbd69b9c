// The second or so of sound between the thread that makes it and the one that plays it.
#pragma once

#include "platform/voice/sound/converter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessavox::voice {

/// Frames in a queue, each known by its number in the stream. Not thread-safe.
class SoundRing {
public:
    SoundRing(PcmFormat format, std::size_t capacity_frames)
        : m_format(format)
        , m_capacity(capacity_frames)
    {
    }

    /// The frames that are in: from begin() up to, not including, end().
    std::uint64_t begin() const { return m_begin; }
    std::uint64_t end() const { return m_begin + frames(); }
    std::size_t frames() const
    {
        return (m_bytes.size() - m_offset) / static_cast<std::size_t>(m_format.block_align());
    }
    /// Full is a wish, not a border: append() takes whatever it is given.
    bool full() const { return frames() >= m_capacity; }

    void append(std::span<const std::byte> frames)
    {
        if (m_offset > m_bytes.size() / 2) {
            m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_offset));
            m_offset = 0;
        }
        m_bytes.insert(m_bytes.end(), frames.begin(), frames.end());
    }
    /// Moves at most `count` of the oldest frames to the end of `out`.
    void take(std::size_t count, std::vector<std::byte>& out)
    {
        count = std::min(count, frames());
        const std::size_t bytes = count * static_cast<std::size_t>(m_format.block_align());
        const auto first = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_offset);
        out.insert(out.end(), first, first + static_cast<std::ptrdiff_t>(bytes));
        m_offset += bytes;
        m_begin += count;
    }
    /// Drops the frames from `frame` on and lets the last `fade_frames` before it fade away.
    void truncate(std::uint64_t frame, std::size_t fade_frames)
    {
        if (frame >= end() || frame < m_begin)
            return;
        const auto align = static_cast<std::size_t>(m_format.block_align());
        const auto kept = static_cast<std::size_t>(frame - m_begin);
        m_bytes.resize(m_offset + kept * align);
        const std::size_t fading = std::min(fade_frames, kept);
        for (std::size_t i = 0; i < fading; ++i) {
            const float factor = static_cast<float>(i) / static_cast<float>(fading);
            scale(std::span(m_bytes).last((i + 1) * align).first(align), m_format, factor);
        }
    }
    /// Drops everything; the next frame to be appended is `frame`.
    void restart(std::uint64_t frame)
    {
        m_bytes.clear();
        m_offset = 0;
        m_begin = frame;
    }

private:
    PcmFormat m_format;
    std::size_t m_capacity;
    std::uint64_t m_begin = 0;
    std::size_t m_offset = 0; // bytes at the front of m_bytes that are taken already
    std::vector<std::byte> m_bytes;
};

} // namespace tessavox::voice
