#include "platform/voice/utterance_events.h"

#include "platform/speech_voice.h"

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

void add_phones(const Rendering& rendering, std::int32_t interests, Events& events)
{
    for (std::size_t i = 0; i < rendering.phones.size(); ++i) {
        const PhoneMark& mark = rendering.phones[i];
        const PhoneMark next
            = i + 1 < rendering.phones.size() ? rendering.phones[i + 1] : PhoneMark();
        const std::int32_t duration = milliseconds(mark.frames, rendering.sample_rate);
        if ((interests & SVEPhoneme) != 0)
            events.add(
                mark.frame, PhonemeStarted{ duration, next.phone, mark.feature, mark.phone });
        if ((interests & SVEViseme) != 0)
            events.add(
                mark.frame, VisemeStarted{ duration, next.viseme, mark.feature, mark.viseme });
    }
}

/// Where the last word's sound ends.
std::uint64_t end_of_sound(const Rendering& rendering)
{
    for (auto phone = rendering.phones.rbegin(); phone != rendering.phones.rend(); ++phone)
        if (phone->viseme != 0)
            return phone->frame + phone->frames;
    return rendering.samples.size();
}

void add_bookmarks(const Utterance& utterance, const Rendering& rendering, Events& events)
{
    for (const BookmarkPlace& bookmark : utterance.bookmarks) {
        const bool at_end = bookmark.token >= rendering.words.size();
        events.add(at_end ? end_of_sound(rendering) : rendering.words[bookmark.token].frame,
            BookmarkReached{ bookmark.name });
    }
}

} // namespace

std::vector<StreamEvent> events_of(const Utterance& utterance, const Rendering& rendering,
    int changed_voice, std::int32_t interests, const FrameOfSample& frame_of,
    std::uint64_t& next_sequence)
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
    add_bookmarks(utterance, rendering, events);
    for (const WordMark& mark : rendering.words) {
        if (mark.silent)
            continue;
        const Token& token = utterance.tokens[mark.token];
        events.add(mark.frame,
            WordStarted{ static_cast<std::int32_t>(token.source_begin),
                static_cast<std::int32_t>(token.source_length) });
    }
    add_phones(rendering, interests, events);
    if ((interests & SVEAudioLevel) != 0)
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

void apply_levels(const Utterance& utterance, Rendering& rendering)
{
    constexpr int ramps_a_second = 100;
    const std::size_t ramp = static_cast<std::size_t>(rendering.sample_rate / ramps_a_second);
    std::size_t at = 0;
    int percent = 100;
    const auto hold_to = [&](std::size_t end) {
        for (; percent != 100 && at < end; ++at)
            rendering.samples[at]
                = static_cast<std::int16_t>(rendering.samples[at] * percent / 100);
        at = std::max(at, end);
    };
    for (const LevelChange& change : utterance.levels) {
        if (change.token > 0 && change.token < rendering.words.size()) {
            // The ramp is over where the word begins, so that the whole word has its own level.
            const auto word = std::min<std::size_t>(
                rendering.words[change.token].frame, rendering.samples.size());
            hold_to(word - std::min(word, ramp));
            const auto width = static_cast<long>(word - at);
            for (long step = 0; step < width; ++step, ++at) {
                const long level = percent * (width - step) + change.percent * step;
                rendering.samples[at]
                    = static_cast<std::int16_t>(rendering.samples[at] * level / (100 * width));
            }
        }
        percent = change.percent;
    }
    hold_to(rendering.samples.size());
}

} // namespace tessavox::voice
