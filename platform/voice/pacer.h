// Plays what the synthesis worker makes, and tells what is heard at the moment when it is heard.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound/audio_sink.h"
#include "platform/voice/stream.h"

#include <memory>
#include <optional>
#include <vector>

namespace tessavox::voice {

/// The second thread of a voice. It renders nothing, so that no word is late because the next one
/// is being made. Where there is no device, or it vanishes, a clock takes its place for the rest of
/// the stream; the next stream tries the device again.
class Pacer {
public:
    Pacer(Playback& playback, EventQueue& events, SoundServer& server);
    /// Returns when the playback stops.
    void run();

private:
    using Time = Wakeup::Clock::time_point;

    void begin(const std::shared_ptr<Job>& job);
    Time play(const Playback::Orders& orders);
    Time rest();
    void hold(bool paused);
    void open_sink();
    void feed();
    void replace_lost_sink();
    std::uint64_t heard();
    bool release();
    Time next_look(const Playback::Due& due);

    Playback& m_playback;
    EventQueue& m_events;
    SoundServer& m_server;

    std::unique_ptr<AudioSink> m_sink;
    std::string m_sink_output;
    bool m_sink_paused = false;
    bool m_sink_is_clock = false;

    std::shared_ptr<Job> m_job; // the one that is played
    std::optional<Stream> m_stream; // of it
    bool m_finished = false; // the sink knows that all frames are written
    std::uint64_t m_heard = 0; // frames of the stream
    std::uint64_t m_taken = 0;
    std::uint64_t m_owed = 0; // frames that went down with a lost device
    std::int64_t m_stream_to_sink = 0; // number of a frame in the sink, less that in the stream
    std::uint64_t m_heard_last_look = 0;
    Playback::Due m_due;
    std::optional<Time> m_resting_since;
    std::vector<std::byte> m_buffer;
};

} // namespace tessavox::voice
