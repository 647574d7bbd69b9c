#include "platform/qt/gap_text.h"

#include <algorithm>

namespace tessavox {

std::u16string_view GapText::from(std::size_t offset)
{
    if (m_gap == m_gap_end)
        return std::u16string_view(m_units).substr(offset);
    const auto units = m_units.begin();
    const auto at = [&](std::size_t place) { return units + static_cast<std::ptrdiff_t>(place); };
    if (offset < m_gap) {
        std::move_backward(at(offset), at(m_gap), at(m_gap_end));
        m_gap_end -= m_gap - offset;
    } else {
        const std::size_t passed = offset - m_gap;
        std::move(at(m_gap_end), at(m_gap_end + passed), at(m_gap));
        m_gap_end += passed;
    }
    m_gap = offset;
    return std::u16string_view(m_units).substr(m_gap_end);
}

void GapText::replace(std::size_t offset, std::size_t length, std::u16string_view text)
{
    if (m_gap == m_gap_end)
        m_gap = m_gap_end = offset;
    from(offset);
    m_gap_end += length;
    if (m_gap_end - m_gap < text.size()) {
        const std::size_t more = text.size() + m_units.size() / 4;
        m_units.insert(m_gap_end, more, u'\0');
        m_gap_end += more;
    }
    m_units.replace(m_gap, text.size(), text);
    m_gap += text.size();
}

std::u16string GapText::text() const
{
    std::u16string whole = m_units.substr(0, m_gap);
    whole.append(m_units, m_gap_end);
    return whole;
}

} // namespace tessavox
