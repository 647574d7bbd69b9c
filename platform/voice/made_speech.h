// What was made of a text: enough of it to take some back, and to find its sentences again.
#pragma once

#include "platform/voice/reading_ahead.h"
#include "platform/voice/text/utterance_parts.h"

#include <algorithm>
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

    /// The next segment begins. The first of a sentence tells where that begins.
    void add(Segment segment)
    {
        const auto* utterance = std::get_if<Utterance>(&segment.placed.item);
        if (utterance && utterance->sentence)
            begin_sentence(segment.placed.place, segment.begin);
        m_segments.push_back(std::move(segment));
    }
    /// What was made before `frame` is not changed any more.
    void settle(std::uint64_t frame)
    {
        while (m_segments.size() > 1 && m_segments[1].begin < frame)
            m_segments.pop_front();
    }
    /// What was made after `frame` is void; sentences that lie later count as heard there.
    void cut(std::uint64_t frame)
    {
        m_segments.clear();
        for (Sentence& sentence : m_sentences)
            sentence.frame = std::min(sentence.frame, frame);
    }

    const std::deque<Segment>& segments() const { return m_segments; }
    /// The voice that is heard at `frame`; nothing if no segment is in mind.
    std::optional<int> voice_at(std::uint64_t frame) const
    {
        if (m_segments.empty())
            return std::nullopt;
        int voice = m_segments.front().voice_before;
        for (const Segment& segment : m_segments)
            if (segment.begin <= frame)
                voice = segment.voice;
        return voice;
    }
    /// Takes the segments from this one on out, which then are made anew from its word `word` on.
    std::deque<Placed> take_back(std::size_t segment, std::size_t word)
    {
        const auto first = m_segments.begin() + static_cast<std::ptrdiff_t>(segment);
        const std::uint32_t offset = first->placed.place.offset;
        if (word > 0) {
            auto& utterance = std::get<Utterance>(first->placed.item);
            utterance = rest_of(utterance, word);
        }
        std::deque<Placed> again;
        for (auto each = first; each != m_segments.end(); ++each)
            again.push_back(std::move(each->placed));
        m_segments.erase(first, m_segments.end());
        while (!m_sentences.empty() && m_sentences.back().place.offset > offset)
            m_sentences.pop_back();
        return again;
    }

    /// Sentences have numbers from 0 on; how many were begun.
    std::size_t sentences() const { return m_forgotten + m_sentences.size(); }
    /// The number of the sentence that is heard at `frame`. Sentences that were passed over count
    /// as heard at one frame, so the last of them is meant.
    std::ptrdiff_t sentence_at(std::uint64_t frame) const
    {
        const auto after = std::upper_bound(m_sentences.begin(), m_sentences.end(), frame,
            [](std::uint64_t heard, const Sentence& sentence) { return heard < sentence.frame; });
        return static_cast<std::ptrdiff_t>(m_forgotten)
            + std::max<std::ptrdiff_t>(after - m_sentences.begin() - 1, 0);
    }
    /// Where the last one begins; nothing if none is known.
    std::optional<ReadingPlace> last_sentence() const
    {
        return m_sentences.empty() ? std::nullopt : std::optional(m_sentences.back().place);
    }
    /// The sentence there comes after those known. One that is known keeps its number.
    void begin_sentence(const ReadingPlace& place, std::uint64_t frame)
    {
        constexpr std::size_t most_known = 1000; // further back the text is read again
        if (!m_sentences.empty() && m_sentences.back().place.offset == place.offset) {
            m_sentences.back().frame = frame;
            return;
        }
        m_sentences.push_back({ place, frame });
        if (m_sentences.size() > most_known) {
            m_sentences.pop_front();
            ++m_forgotten;
        }
    }
    /// Only so many were begun; none if the last of them is forgotten.
    void forget_sentences_after(std::size_t count)
    {
        const bool known = count > m_forgotten;
        m_sentences.resize(known ? count - m_forgotten : 0);
        m_forgotten = known ? m_forgotten : 0;
    }

private:
    struct Sentence {
        ReadingPlace place;
        std::uint64_t frame = 0;
    };
    std::deque<Segment> m_segments;
    std::deque<Sentence> m_sentences;
    std::size_t m_forgotten = 0; // before the first of these
};

} // namespace tessavox::voice
