// One stream as its listener hears of it.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound/converter.h"

#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace tessavox::voice {

/// The one owner of a stream's start and end: a destination tells it what becomes of the sound,
/// and it tells the listener, once each and in this order. It also brings the sound to the volume
/// in force, whatever the destination; a wave file that is played keeps its own level.
class Stream {
public:
    Stream(std::shared_ptr<const Job> job, Playback& playback, EventQueue& events)
        : m_job(std::move(job))
        , m_playback(playback)
        , m_events(events)
    {
        if (!m_job->wave)
            m_gain.emplace(m_job->format);
    }

    const Job& job() const { return *m_job; }
    /// Tells that it starts, at the first call.
    void start()
    {
        if (!std::exchange(m_started, true))
            tell({ StreamEvent{ 0, 0, StreamStarted() } });
    }
    bool started() const { return m_started; }
    /// Brings frames to the volume in force.
    void level(std::span<std::byte> frames)
    {
        if (!m_gain)
            return;
        m_gain->set(static_cast<float>(m_playback.volume()) / 100.0F);
        m_gain->apply(frames);
    }
    /// Tells what happened, in order.
    void tell(std::vector<StreamEvent> events)
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
    /// Tells that it ended at `frame`, and lets the next one come.
    void end(std::uint64_t frame)
    {
        m_playback.set_spoken_units(*m_job, static_cast<std::int64_t>(m_job->text.size()));
        tell({ StreamEvent{ frame, 0, StreamEnded() } });
        m_playback.finish(*m_job);
    }

private:
    const std::shared_ptr<const Job> m_job;
    Playback& m_playback;
    EventQueue& m_events;
    std::optional<Gain> m_gain; // none for a wave file
    bool m_started = false;
};

} // namespace tessavox::voice
