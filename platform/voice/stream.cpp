#include "platform/voice/stream.h"

#include <utility>

namespace tessavox::voice {

Stream::Stream(std::shared_ptr<const Job> job, Playback& playback, EventQueue& events)
    : m_job(std::move(job))
    , m_playback(playback)
    , m_events(events)
{
    if (!m_job->wave)
        m_gain.emplace(m_job->format);
}

void Stream::start()
{
    if (!std::exchange(m_started, true))
        tell({ StreamEvent{ 0, 0, StreamStarted() } });
}

void Stream::level(std::span<std::byte> frames)
{
    if (!m_gain)
        return;
    m_gain->set(static_cast<float>(m_playback.volume()) / 100.0F);
    m_gain->apply(frames);
}

void Stream::tell(std::vector<StreamEvent> events)
{
    if (events.empty())
        return;
    for (StreamEvent& event : events) {
        if (auto* measured = std::get_if<LevelMeasured>(&event.happening); measured && m_gain)
            measured->level = measured->level * m_playback.volume() / 100;
        if (const auto* word = std::get_if<WordStarted>(&event.happening))
            m_playback.set_spoken_units(*m_job, word->position + word->length);
    }
    m_events.append(*m_job, std::move(events));
}

void Stream::end(std::uint64_t frame)
{
    m_playback.set_spoken_units(*m_job, static_cast<std::int64_t>(m_job->text.size()));
    tell({ StreamEvent{ frame, 0, StreamEnded() } });
    m_playback.finish(*m_job);
}

} // namespace tessavox::voice
