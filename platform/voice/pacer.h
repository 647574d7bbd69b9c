// Plays what the synthesis worker makes, and tells what is heard at the moment when it is heard.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound/audio_sink.h"
#include "platform/voice/stream.h"

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <vector>

namespace tessavox::voice {

/// The second thread of a voice. It renders nothing, so that no word is late because the next one
/// is being made. Where there is no device, or it vanishes or hangs, a clock takes its place, so
/// that the words go on; meanwhile the device is looked for, and the sound comes back where the
/// words are.
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
    using Opening = std::function<std::unique_ptr<AudioSink>()>;
    Opening opening() const;
    void open_sink();
    void feed();
    bool sink_is_lost() const;
    void play_on(std::unique_ptr<AudioSink> sink);
    void play_on_device(std::unique_ptr<AudioSink> sink);
    void play_by_the_clock();
    void look_for_device();
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
    Time m_moved_at; // when the sound went on last, or had no reason to
    bool m_has_moved = false; // since the sink was opened

    // While the clock stands in for the device:
    std::optional<Time> m_absent_since;
    bool m_absence_told = false;
    bool m_server_hangs = false; // it doesn't even refuse: nobody may wait for it again
    std::future<std::unique_ptr<AudioSink>> m_opening;
    std::shared_ptr<Job> m_opening_for;
    Time m_next_attempt;

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
