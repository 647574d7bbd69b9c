#include "platform/voice/text/source_map.h"

namespace tessavox::voice {

void SourceMap::add(std::uint32_t text_begin, std::uint32_t source_begin)
{
    if (!m_segments.empty()) {
        const Segment& last = m_segments.back();
        if (last.source_length == one_for_one
            && last.source_begin + (text_begin - last.text_begin) == source_begin)
            return;
    }
    m_segments.push_back({ text_begin, source_begin, one_for_one });
}

void SourceMap::add_entity(
    std::uint32_t text_begin, std::uint32_t source_begin, std::uint32_t source_length)
{
    m_segments.push_back({ text_begin, source_begin, source_length });
}

const SourceMap::Segment& SourceMap::segment_of(std::uint32_t unit) const
{
    if (m_last >= m_segments.size() || m_segments[m_last].text_begin > unit)
        m_last = 0;
    while (m_last + 1 < m_segments.size() && m_segments[m_last + 1].text_begin <= unit)
        ++m_last;
    return m_segments[m_last];
}

std::uint32_t SourceMap::begin_of(std::uint32_t unit) const
{
    const Segment& segment = segment_of(unit);
    const bool entity = segment.source_length != one_for_one;
    return segment.source_begin + (entity ? 0 : unit - segment.text_begin);
}

std::uint32_t SourceMap::end_of(std::uint32_t unit) const
{
    const Segment& segment = segment_of(unit);
    const bool entity = segment.source_length != one_for_one;
    return segment.source_begin + (entity ? segment.source_length : unit - segment.text_begin + 1);
}

} // namespace tessavox::voice
