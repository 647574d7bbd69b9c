// A stream to the sound server.
#pragma once

#include "platform/voice/sound/pulse_connection.h"

#include <pulse/stream.h>

#include <atomic>
#include <optional>

namespace tessavox::voice {

class PulseSink final : public AudioSink {
public:
    /// Begins to open the stream. @throws Failure if that can't even begin.
    PulseSink(std::shared_ptr<PulseConnection> connection, PcmFormat format,
        const std::string& output, std::function<void()> wake);
    ~PulseSink() override;
    PulseSink(const PulseSink&) = delete;
    PulseSink& operator=(const PulseSink&) = delete;

    /// @throws Failure if the stream is refused or not open in time.
    void wait_until_open(PulseConnection::Deadline deadline);

    PcmFormat format() const override { return m_format; }
    std::size_t writable() override;
    void write(std::span<const std::byte> frames) override;
    void finish() override;
    std::uint64_t played() override;
    void pause() override;
    void resume() override;
    void flush() override;
    bool alive() const override { return m_state == State::open; }

private:
    using Clock = std::chrono::steady_clock;
    enum class State { opening, open, gone };
    struct StreamRelease {
        void operator()(pa_stream* stream) const { pa_stream_unref(stream); }
    };
    // The last frames are with the device; it needs the time from then on to sound them.
    struct Ending {
        Clock::time_point since;
        std::uint64_t from;
    };

    // All of these under the connection's lock.
    void connect(const std::string& output);
    std::uint64_t position();
    void cork(bool corked);
    void drain();
    static void state_changed(pa_stream* stream, void* self);
    static void room_came_free(pa_stream* stream, std::size_t, void* self);
    static void drained(pa_stream* stream, int success, void* self);
    static void timing_after_flush(pa_stream* stream, int success, void* self);

    std::shared_ptr<PulseConnection> m_connection;
    PcmFormat m_format;
    std::function<void()> m_wake;
    std::atomic<State> m_state = State::opening;

    std::unique_ptr<pa_stream, StreamRelease> m_stream;
    std::uint64_t m_written = 0; // frames, as the three below
    std::uint64_t m_played = 0; // as told last
    std::int64_t m_base = 0; // our count less the server's, which differ after a flush
    std::optional<Ending> m_ending;
    bool m_corked = true;
    bool m_paused = false;
    bool m_finished = false; // nothing was written since finish()
    bool m_drain_again = false;
    PulseOperation m_draining;
    PulseOperation m_flushing; // until it is known where the server counts on
};

} // namespace tessavox::voice
