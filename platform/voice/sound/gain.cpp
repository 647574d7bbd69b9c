// The gain of converter.h.
#include "platform/voice/sound/converter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tessavox::voice {

namespace {

constexpr float glide_seconds = 0.005F; // a full swing; short enough to seem immediate

// Truncation of a positive sum rounds to the nearest, and compilers make vector code of it.
std::int16_t scaled_16(std::int16_t sample, float gain)
{
    return static_cast<std::int16_t>(
        static_cast<int>(static_cast<float>(sample) * gain + 32768.5F) - 32768);
}

std::byte scaled_8(std::byte sample, float gain)
{
    const float centred = static_cast<float>(static_cast<int>(sample) - 128);
    return static_cast<std::byte>(static_cast<int>(centred * gain + 128.5F));
}

} // namespace

void scale(std::span<std::byte> samples, PcmFormat format, float gain)
{
    if (format.bits == 8) {
        for (std::byte& sample : samples)
            sample = scaled_8(sample, gain);
        return;
    }
    for (std::size_t at = 0; at + 1 < samples.size(); at += 2) {
        std::int16_t sample = 0;
        std::memcpy(&sample, &samples[at], sizeof sample);
        sample = scaled_16(sample, gain);
        std::memcpy(&samples[at], &sample, sizeof sample);
    }
}

Gain::Gain(PcmFormat format)
    : m_format(format)
{
}

void Gain::set(float factor)
{
    m_wanted = std::isfinite(factor) ? std::clamp(factor, 0.0F, 1.0F) : 1.0F;
    if (!m_started)
        m_current = m_wanted;
}

void Gain::apply(std::span<std::byte> frames)
{
    const auto align = static_cast<std::size_t>(m_format.block_align());
    const float step = 1.0F / (glide_seconds * static_cast<float>(m_format.rate));
    m_started = m_started || !frames.empty();
    while (m_current != m_wanted && frames.size() >= align) {
        m_current = m_wanted > m_current ? std::min(m_wanted, m_current + step)
                                         : std::max(m_wanted, m_current - step);
        scale(frames.first(align), m_format, m_current);
        frames = frames.subspan(align);
    }
    if (m_current != 1.0F)
        scale(frames, m_format, m_current);
}

} // namespace tessavox::voice
