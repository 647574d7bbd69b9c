// What was made of a text: enough of it to take some back, and to find its sentences again.
#pragma once

#include "platform/voice/reading_ahead.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace tessavox::voice {

/// Pure memory of a live reading: it makes nothing.
class MadeSpeech {
public:
    struct Segment {
        Placed placed;
        std::uint64_t begin = 0; // frame
        int rate = 0; // with which it was rendered
        int voice = -1;
        int voice_before = -1;
        std::vector<std::uint64_t> words; // frame of each token
        std::uint64_t first_sequence = 0; // of its events
    };
    struct Sentence {
        ReadingPlace place;
        std::uint64_t frame = 0;
    };

    /// The next segment begins. The first of a sentence tells where that begins.
    void add(Segment segment);
    /// What was made before `frame` is not changed any more.
    void settle(std::uint64_t frame);

    const std::deque<Segment>& segments() const { return m_segments; }
    /// Takes the segments from this one on out, which then are made anew from its word `word` on.
    std::deque<Placed> take_back(std::size_t segment, std::size_t word);

    const std::vector<Sentence>& sentences() const { return m_sentences; }
    /// The number of the sentence that is heard at `frame`.
    std::ptrdiff_t sentence_at(std::uint64_t frame) const;
    /// The voice that is heard at `frame`; nothing if no segment is in mind.
    std::optional<int> voice_at(std::uint64_t frame) const;
    /// What was made after `frame` is void; sentences that lie later count as heard there.
    void cut(std::uint64_t frame);
    /// The sentence there comes after those known. One that is known keeps its number.
    void begin_sentence(const ReadingPlace& place, std::uint64_t frame);
    /// Only so many are known.
    void forget_sentences_after(std::size_t count) { m_sentences.resize(count); }

private:
    std::deque<Segment> m_segments;
    std::vector<Sentence> m_sentences;
};

} // namespace tessavox::voice
