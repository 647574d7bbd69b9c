#include "platform/voice/utterance_events.h"

#include <algorithm>
#include <cstdlib>

namespace tessavox::voice {

namespace {

constexpr int levels_a_second = 20;

class Events {
public:
    Events(const FrameOfSample& frame_of, std::uint64_t& next_sequence)
        : m_frame_of(frame_of)
        , m_next_sequence(next_sequence)
    {
    }
    void add(std::uint64_t sample, Happening happening)
    {
        m_events.push_back({ m_frame_of(sample), m_next_sequence++, std::move(happening) });
    }
    std::vector<StreamEvent>& list() { return m_events; }

private:
    const FrameOfSample& m_frame_of;
    std::uint64_t& m_next_sequence;
    std::vector<StreamEvent> m_events;
};

std::int32_t milliseconds(std::uint64_t frames, int rate)
{
    return rate > 0 ? static_cast<std::int32_t>(frames * 1000 / static_cast<std::uint64_t>(rate))
                    : 0;
}

void add_phones(const Rendering& rendering, Events& events)
{
    for (std::size_t i = 0; i < rendering.phones.size(); ++i) {
        const PhoneMark& mark = rendering.phones[i];
        const PhoneMark next
            = i + 1 < rendering.phones.size() ? rendering.phones[i + 1] : PhoneMark();
        const std::int32_t duration = milliseconds(mark.frames, rendering.sample_rate);
        events.add(mark.frame, PhonemeStarted{ duration, next.phone, mark.feature, mark.phone });
        events.add(mark.frame, VisemeStarted{ duration, next.viseme, mark.feature, mark.viseme });
    }
}

} // namespace

std::vector<StreamEvent> events_of(const Utterance& utterance, const Rendering& rendering,
    int changed_voice, const FrameOfSample& frame_of, std::uint64_t& next_sequence)
{
    Events events(frame_of, next_sequence);
    const std::uint64_t first = rendering.words.empty() ? 0 : rendering.words.front().frame;
    if (changed_voice >= 0)
        events.add(first, VoiceChanged{ changed_voice });
    if (utterance.sentence) {
        events.add(first,
            SentenceStarted{ static_cast<std::int32_t>(utterance.sentence->source_begin),
                static_cast<std::int32_t>(utterance.sentence->source_length) });
    }
    for (const WordMark& mark : rendering.words) {
        const Token& token = utterance.tokens[mark.token];
        events.add(mark.frame,
            WordStarted{ static_cast<std::int32_t>(token.source_begin),
                static_cast<std::int32_t>(token.source_length) });
    }
    add_phones(rendering, events);
    append_levels(
        rendering.samples, rendering.sample_rate, 1, frame_of, next_sequence, events.list());
    std::stable_sort(events.list().begin(), events.list().end(),
        [](const StreamEvent& a, const StreamEvent& b) { return a.frame < b.frame; });
    return std::move(events.list());
}

void append_levels(std::span<const std::int16_t> samples, int sample_rate, int channels,
    const FrameOfSample& frame_of, std::uint64_t& next_sequence, std::vector<StreamEvent>& out)
{
    const auto width = static_cast<std::size_t>(channels);
    const std::size_t stretch = static_cast<std::size_t>(sample_rate / levels_a_second) * width;
    for (std::size_t at = 0; at < samples.size() && stretch > 0; at += stretch) {
        int peak = 0;
        for (const std::int16_t sample :
            samples.subspan(at, std::min(stretch, samples.size() - at)))
            peak = std::max(peak, std::abs(static_cast<int>(sample)));
        out.push_back(
            { frame_of(at / width), next_sequence++, LevelMeasured{ peak * 100 / 32768 } });
    }
}

Utterance rest_of(const Utterance& utterance, std::size_t first)
{
    if (first == 0)
        return utterance;
    const std::uint32_t from = utterance.tokens[first].begin;
    Utterance rest;
    rest.text = utterance.text.substr(from);
    rest.tokens.assign(
        utterance.tokens.begin() + static_cast<std::ptrdiff_t>(first), utterance.tokens.end());
    for (Token& token : rest.tokens)
        token.begin -= from;
    rest.ends_sentence = utterance.ends_sentence;
    rest.style = utterance.style;
    return rest;
}

Utterance start_of(const Utterance& utterance, std::size_t end)
{
    Utterance start = utterance;
    start.text.resize(utterance.tokens[end].begin);
    start.tokens.resize(end);
    start.ends_sentence = false;
    return start;
}

std::size_t division_of(const Utterance& utterance, std::size_t most_units)
{
    if (utterance.text.size() <= most_units || !utterance.pronunciation.empty())
        return 0;
    constexpr std::u16string_view marks = u",;:)";
    std::size_t best = 0;
    bool best_has_mark = false;
    for (std::size_t i = 1; i < utterance.tokens.size(); ++i) {
        const Token& token = utterance.tokens[i];
        if (token.begin > most_units)
            break;
        const Token& before = utterance.tokens[i - 1];
        const std::u16string_view between
            = std::u16string_view(utterance.text)
                  .substr(before.begin + before.length, token.begin - before.begin - before.length);
        const bool has_mark = between.find_first_of(marks) != std::u16string_view::npos;
        if (has_mark || !best_has_mark) {
            best = i;
            best_has_mark = has_mark && token.begin > most_units / 4;
        }
    }
    return best;
}

void scale_to_style(std::vector<std::int16_t>& samples, const SpeechStyle& style)
{
    if (style.volume == 100)
        return;
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(sample * style.volume / 100);
}

} // namespace tessavox::voice
