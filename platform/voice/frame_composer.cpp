#include "platform/voice/frame_composer.h"

namespace tessavox::voice {

FrameComposer::FrameComposer(PcmFormat format)
    : m_format(format)
{
}

void FrameComposer::restart(std::uint64_t frame)
{
    m_converter.reset();
    m_base = frame;
    m_pushed = m_made = 0;
}

void FrameComposer::begin(int rate, int channels, std::vector<std::byte>& out)
{
    if (m_converter && m_converter->input_rate() == rate
        && m_converter->input_channels() == channels)
        return;
    finish(out);
    m_converter.emplace(rate, channels, m_format);
}

int FrameComposer::rate_or(int otherwise) const
{
    return m_converter ? m_converter->input_rate() : otherwise;
}

std::uint64_t FrameComposer::frame_of(std::uint64_t ahead) const
{
    if (!m_converter)
        return m_base;
    const auto from = static_cast<std::uint64_t>(m_converter->input_rate());
    const auto to = static_cast<std::uint64_t>(m_format.rate);
    return m_base + ((m_pushed + ahead) * to + from / 2) / from;
}

void FrameComposer::push(std::span<const std::int16_t> samples, std::vector<std::byte>& out)
{
    const std::size_t before = out.size();
    m_converter->push(samples, out);
    m_pushed += samples.size() / static_cast<std::size_t>(m_converter->input_channels());
    m_made += (out.size() - before) / static_cast<std::size_t>(m_format.block_align());
}

void FrameComposer::finish(std::vector<std::byte>& out)
{
    if (!m_converter)
        return;
    const std::size_t before = out.size();
    m_converter->finish(out);
    m_made += (out.size() - before) / static_cast<std::size_t>(m_format.block_align());
    restart(m_base + m_made);
}

} // namespace tessavox::voice
