// One stream as its listener hears of it.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound/converter.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tessavox::voice {

/// The one owner of a stream's start and end: a destination tells it what becomes of the sound,
/// and it tells the listener, once each and in this order. It also brings the sound to the volume
/// in force, whatever the destination; a wave file that is played keeps its own level.
class Stream {
public:
    Stream(std::shared_ptr<const Job> job, Playback& playback, EventQueue& events);

    const Job& job() const { return *m_job; }
    /// Tells that it starts, at the first call.
    void start();
    bool started() const { return m_started; }
    /// Brings frames to the volume in force.
    void level(std::span<std::byte> frames);
    /// Tells what happened, in order.
    void tell(std::vector<StreamEvent> events);
    /// Tells that it ended at `frame`, and lets the next one come.
    void end(std::uint64_t frame);

private:
    const std::shared_ptr<const Job> m_job;
    Playback& m_playback;
    EventQueue& m_events;
    std::optional<Gain> m_gain; // none for a wave file
    bool m_started = false;
};

} // namespace tessavox::voice
