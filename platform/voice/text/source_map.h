// The way back from a decoded text to the text given to Speak.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessavox::voice {

/// Where the characters of a decoded text come from.
class SourceMap {
public:
    void clear() { m_segments.clear(); }
    /// The units from `text_begin` on stand one for one for those at `source_begin`.
    void add(std::uint32_t text_begin, std::uint32_t source_begin);
    /// The units from `text_begin` up to the next call stand together for this extent.
    void add_entity(
        std::uint32_t text_begin, std::uint32_t source_begin, std::uint32_t source_length);

    /// Both take the index of a unit of the text. Rising questions are answered fastest.
    std::uint32_t begin_of(std::uint32_t unit) const;
    std::uint32_t end_of(std::uint32_t unit) const;

private:
    struct Segment {
        std::uint32_t text_begin = 0;
        std::uint32_t source_begin = 0;
        std::uint32_t source_length = 0; // of an entity; one_for_one otherwise
    };
    static constexpr std::uint32_t one_for_one = UINT32_MAX;
    const Segment& segment_of(std::uint32_t unit) const;

    std::vector<Segment> m_segments;
    mutable std::size_t m_last = 0;
};

} // namespace tessavox::voice
