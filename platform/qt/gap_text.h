// A text in which many places are changed one after the other.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessavox {

/// The free room lies where the last change was made, so a change near it moves little. Offsets
/// are UTF-16 code units and have to lie in the text.
class GapText {
public:
    explicit GapText(std::u16string_view text)
        : m_units(text)
    {
    }

    std::size_t size() const { return m_units.size() - (m_gap_end - m_gap); }
    /// All from the offset on; holds until the next call. Costs the way from the last change.
    std::u16string_view from(std::size_t offset);
    void replace(std::size_t offset, std::size_t length, std::u16string_view text);
    std::u16string text() const;

private:
    std::u16string m_units;
    std::size_t m_gap = 0; // where the room starts
    std::size_t m_gap_end = 0;
};

} // namespace tessavox
