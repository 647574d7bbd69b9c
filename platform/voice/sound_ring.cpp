#include "platform/voice/sound_ring.h"

#include "platform/voice/sound/converter.h"

#include <algorithm>

namespace tessavox::voice {

SoundRing::SoundRing(PcmFormat format, std::size_t capacity_frames)
    : m_format(format)
    , m_capacity(capacity_frames)
{
}

std::size_t SoundRing::frames() const
{
    return (m_bytes.size() - m_offset) / static_cast<std::size_t>(m_format.block_align());
}

std::uint64_t SoundRing::end() const
{
    return m_begin + frames();
}

void SoundRing::append(std::span<const std::byte> frames)
{
    if (m_offset > m_bytes.size() / 2) {
        m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_offset));
        m_offset = 0;
    }
    m_bytes.insert(m_bytes.end(), frames.begin(), frames.end());
}

void SoundRing::take(std::size_t count, std::vector<std::byte>& out)
{
    count = std::min(count, frames());
    const std::size_t bytes = count * static_cast<std::size_t>(m_format.block_align());
    const auto first = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_offset);
    out.insert(out.end(), first, first + static_cast<std::ptrdiff_t>(bytes));
    m_offset += bytes;
    m_begin += count;
}

void SoundRing::truncate(std::uint64_t frame, std::size_t fade_frames)
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

void SoundRing::restart(std::uint64_t frame)
{
    m_bytes.clear();
    m_offset = 0;
    m_begin = frame;
}

} // namespace tessavox::voice
