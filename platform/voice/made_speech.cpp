#include "platform/voice/made_speech.h"

#include "platform/voice/text/utterance_parts.h"

#include <algorithm>
#include <utility>

namespace tessavox::voice {

void MadeSpeech::add(Segment segment)
{
    const auto* utterance = std::get_if<Utterance>(&segment.placed.item);
    if (utterance && utterance->sentence)
        begin_sentence(segment.placed.place, segment.begin);
    m_segments.push_back(std::move(segment));
}

void MadeSpeech::settle(std::uint64_t frame)
{
    while (m_segments.size() > 1 && m_segments[1].begin < frame)
        m_segments.pop_front();
}

std::deque<Placed> MadeSpeech::take_back(std::size_t index, std::size_t word)
{
    const auto first = m_segments.begin() + static_cast<std::ptrdiff_t>(index);
    const std::uint32_t offset = first->placed.place.offset;
    if (word > 0) {
        auto& utterance = std::get<Utterance>(first->placed.item);
        utterance = rest_of(utterance, word);
    }
    std::deque<Placed> again;
    for (auto segment = first; segment != m_segments.end(); ++segment)
        again.push_back(std::move(segment->placed));
    m_segments.erase(first, m_segments.end());
    std::erase_if(
        m_sentences, [offset](const Sentence& sentence) { return sentence.place.offset > offset; });
    return again;
}

// Sentences that were passed over count as heard at one frame, so the last of them is meant.
std::ptrdiff_t MadeSpeech::sentence_at(std::uint64_t frame) const
{
    const auto after = std::upper_bound(m_sentences.begin(), m_sentences.end(), frame,
        [](std::uint64_t heard, const Sentence& sentence) { return heard < sentence.frame; });
    return std::max<std::ptrdiff_t>(after - m_sentences.begin() - 1, 0);
}

std::optional<int> MadeSpeech::voice_at(std::uint64_t frame) const
{
    if (m_segments.empty())
        return std::nullopt;
    int voice = m_segments.front().voice_before;
    for (const Segment& segment : m_segments)
        if (segment.begin <= frame)
            voice = segment.voice;
    return voice;
}

void MadeSpeech::cut(std::uint64_t frame)
{
    m_segments.clear();
    for (Sentence& sentence : m_sentences)
        sentence.frame = std::min(sentence.frame, frame);
}

void MadeSpeech::begin_sentence(const ReadingPlace& place, std::uint64_t frame)
{
    if (m_sentences.empty() || m_sentences.back().place.offset != place.offset)
        m_sentences.push_back({ place, frame });
    else
        m_sentences.back().frame = frame;
}

} // namespace tessavox::voice
