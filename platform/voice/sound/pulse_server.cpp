// Streams to the sound server, each on the one connection of the process.
#include "platform/failure.h"
#include "platform/voice/sound/pulse_connection.h"

#include <pulse/error.h>
#include <pulse/stream.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>

namespace tessavox::voice {

namespace {

using Lock = PulseConnection::Lock;

// What is handed over ahead of the sound. Short, so that volume and skips act at once; long enough
// to ride out a busy machine.
constexpr int target_ms = 80;
constexpr int smooth_start_ms = 30;
constexpr int request_ms = 10;

constexpr std::uint64_t microseconds_per_second = 1'000'000;

pa_sample_spec sample_spec(PcmFormat format)
{
    return { .format = format.bits == 8 ? PA_SAMPLE_U8 : PA_SAMPLE_S16LE,
        .rate = static_cast<std::uint32_t>(format.rate),
        .channels = static_cast<std::uint8_t>(format.channels) };
}

pa_buffer_attr buffer_attributes(PcmFormat format)
{
    const auto bytes = [format](int ms) {
        return static_cast<std::uint32_t>(format.rate * ms / 1000 * format.block_align());
    };
    return { .maxlength = static_cast<std::uint32_t>(-1),
        .tlength = bytes(target_ms),
        .prebuf = bytes(smooth_start_ms),
        .minreq = bytes(request_ms),
        .fragsize = static_cast<std::uint32_t>(-1) };
}

class PulseSink final : public AudioSink {
public:
    /// Begins to open the stream. @throws Failure if that can't even begin.
    PulseSink(std::shared_ptr<PulseConnection> connection, PcmFormat format,
        const std::string& output, std::function<void()> wake)
        : m_connection(std::move(connection))
        , m_format(format)
        , m_wake(std::move(wake))
    {
        const Lock lock(*m_connection);
        connect(output);
    }
    ~PulseSink() override
    {
        const Lock lock(*m_connection);
        m_draining.reset();
        m_flushing.reset();
        pa_stream_set_state_callback(m_stream.get(), nullptr, nullptr);
        pa_stream_set_write_callback(m_stream.get(), nullptr, nullptr);
        pa_stream_disconnect(m_stream.get());
        m_stream.reset();
    }
    PulseSink(const PulseSink&) = delete;
    PulseSink& operator=(const PulseSink&) = delete;

    /// @throws Failure if the stream is refused or not open in time.
    void wait_until_open(PulseConnection::Deadline deadline)
    {
        m_connection->wait(deadline, [this] { return m_state != State::opening; });
        if (m_state == State::opening)
            throw Failure("the sound server does not answer");
        if (m_state == State::gone)
            throw Failure("the sound server has no such output");
    }

    PcmFormat format() const override { return m_format; }
    std::size_t writable() override
    {
        const Lock lock(*m_connection);
        if (!alive())
            return 0;
        const std::size_t bytes = pa_stream_writable_size(m_stream.get());
        return bytes == static_cast<std::size_t>(-1)
            ? 0
            : bytes / static_cast<std::size_t>(m_format.block_align());
    }
    void write(std::span<const std::byte> frames) override
    {
        const Lock lock(*m_connection);
        if (!alive() || frames.empty())
            return;
        if (pa_stream_write(
                m_stream.get(), frames.data(), frames.size(), nullptr, 0, PA_SEEK_RELATIVE)
            < 0)
            return;
        m_written += frames.size() / static_cast<std::size_t>(m_format.block_align());
        m_finished = false;
        m_ending.reset();
        if (!m_paused)
            cork(false);
    }
    void finish() override
    {
        const Lock lock(*m_connection);
        m_finished = true;
        if (alive() && !m_paused && m_played < m_written)
            drain();
    }
    std::uint64_t played() override
    {
        const Lock lock(*m_connection);
        return position();
    }
    void pause() override
    {
        const Lock lock(*m_connection);
        position();
        m_paused = true;
        cork(true);
    }
    void resume() override
    {
        const Lock lock(*m_connection);
        m_paused = false;
        if (!alive() || m_written == 0)
            return;
        cork(false);
        // A drain that waits too long is given up, and one asked for in the pause was never sent.
        m_ending.reset();
        if (m_finished && m_played < m_written)
            drain();
    }
    void flush() override
    {
        const Lock lock(*m_connection);
        m_written = position();
        m_finished = false;
        m_ending.reset();
        m_draining.reset();
        if (!alive())
            return;
        forget(pa_stream_flush(m_stream.get(), nullptr, nullptr));
        m_flushing.reset(pa_stream_update_timing_info(m_stream.get(), timing_after_flush, this));
    }
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
    void connect(const std::string& output)
    {
        const pa_sample_spec spec = sample_spec(m_format);
        m_stream.reset(pa_stream_new(m_connection->context(), "Speech", &spec, nullptr));
        if (!m_stream)
            throw Failure(std::string("no stream: ")
                + pa_strerror(pa_context_errno(m_connection->context())));
        pa_stream_set_state_callback(m_stream.get(), state_changed, this);
        pa_stream_set_write_callback(m_stream.get(), room_came_free, this);
        const pa_buffer_attr buffer = buffer_attributes(m_format);
        const auto flags
            = static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY
                | PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE);
        if (pa_stream_connect_playback(m_stream.get(), output.empty() ? nullptr : output.c_str(),
                &buffer, flags, nullptr, nullptr)
            < 0) {
            pa_stream_set_state_callback(m_stream.get(), nullptr, nullptr);
            pa_stream_set_write_callback(m_stream.get(), nullptr, nullptr);
            m_stream.reset();
            throw Failure("the sound server takes no stream");
        }
    }
    std::uint64_t position()
    {
        if (!alive() || m_paused || m_flushing)
            return m_played;
        pa_usec_t time = 0;
        if (pa_stream_get_time(m_stream.get(), &time) < 0)
            return m_played; // not started yet
        const auto rate = static_cast<std::uint64_t>(m_format.rate);
        auto now = static_cast<std::int64_t>(time * rate / microseconds_per_second) + m_base;
        if (m_ending) {
            const std::chrono::duration<double> passed = Clock::now() - m_ending->since;
            now = std::max(now,
                static_cast<std::int64_t>(m_ending->from)
                    + static_cast<std::int64_t>(passed.count() * m_format.rate));
        }
        now = std::min(now, static_cast<std::int64_t>(m_written));
        m_played = std::max(m_played, static_cast<std::uint64_t>(std::max<std::int64_t>(now, 0)));
        return m_played;
    }
    void cork(bool corked)
    {
        if (alive() && std::exchange(m_corked, corked) != corked)
            forget(pa_stream_cork(m_stream.get(), corked ? 1 : 0, nullptr, nullptr));
    }
    void drain()
    {
        // The server remembers one drain only, so that a second one has to wait for the first.
        m_drain_again = m_draining != nullptr;
        if (!m_draining)
            m_draining.reset(pa_stream_drain(m_stream.get(), drained, this));
    }
    static void state_changed(pa_stream* stream, void* self)
    {
        auto& sink = *static_cast<PulseSink*>(self);
        const pa_stream_state_t now = pa_stream_get_state(stream);
        if (now == PA_STREAM_READY)
            sink.m_state = State::open;
        else if (!PA_STREAM_IS_GOOD(now))
            sink.m_state = State::gone;
        else
            return;
        sink.m_connection->announce();
        if (now != PA_STREAM_READY && sink.m_wake)
            sink.m_wake();
    }
    static void room_came_free(pa_stream*, std::size_t, void* self)
    {
        const auto& sink = *static_cast<PulseSink*>(self);
        if (sink.m_wake)
            sink.m_wake();
    }
    static void drained(pa_stream*, int success, void* self)
    {
        auto& sink = *static_cast<PulseSink*>(self);
        sink.m_draining.reset();
        if (!sink.m_finished)
            return;
        if (std::exchange(sink.m_drain_again, false))
            sink.drain();
        else if (success)
            sink.m_ending = Ending{ .since = Clock::now(), .from = sink.position() };
    }
    static void timing_after_flush(pa_stream* stream, int success, void* self)
    {
        auto& sink = *static_cast<PulseSink*>(self);
        sink.m_flushing.reset();
        const pa_timing_info* timing = success ? pa_stream_get_timing_info(stream) : nullptr;
        if (timing && !timing->write_index_corrupt)
            sink.m_base = static_cast<std::int64_t>(sink.m_written)
                - timing->write_index / sink.m_format.block_align();
    }

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

constexpr std::chrono::seconds patience{ 1 };

class PulseServer final : public SoundServer {
public:
    explicit PulseServer(std::string application_name)
        : m_application_name(std::move(application_name))
    {
    }

    std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string& output, std::function<void()> wake) override
    {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        auto connection = current();
        // That a server went away is noticed at times only when it is used: then try its successor.
        const bool used_before = connection->state() == PulseConnection::State::ready;
        try {
            return open_on(connection, format, output, wake, deadline);
        } catch (const Failure&) {
            if (std::chrono::steady_clock::now() >= deadline)
                give_up(connection);
            if (!used_before || connection->state() != PulseConnection::State::lost)
                throw;
        }
        connection = current();
        return open_on(connection, format, output, wake, deadline);
    }

    std::vector<Output> outputs() override
    {
        std::vector<Output> known;
        attempt([&] {
            m_outputs_wanted = true;
            known = current()->outputs();
        });
        return known;
    }

private:
    static std::unique_ptr<AudioSink> open_on(const std::shared_ptr<PulseConnection>& connection,
        PcmFormat format, const std::string& output, const std::function<void()>& wake,
        PulseConnection::Deadline deadline)
    {
        if (connection->wait_until_connected(deadline) != PulseConnection::State::ready)
            throw Failure("the sound server does not answer");
        auto sink = std::make_unique<PulseSink>(connection, format, output, wake);
        sink->wait_until_open(deadline);
        return sink;
    }

    /// The connection, or a new one if it is lost.
    std::shared_ptr<PulseConnection> current()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_connection || m_connection->state() == PulseConnection::State::lost) {
            m_connection.reset();
            m_connection = std::make_shared<PulseConnection>(m_application_name);
        }
        if (m_outputs_wanted)
            m_connection->watch_outputs();
        return m_connection;
    }

    /// A server that does not answer is not asked again: the next open() looks for a better one.
    void give_up(const std::shared_ptr<PulseConnection>& connection)
    {
        const std::lock_guard lock(m_mutex);
        if (m_connection == connection)
            m_connection.reset();
    }

    std::string m_application_name;
    std::atomic<bool> m_outputs_wanted = false;
    std::mutex m_mutex;
    std::shared_ptr<PulseConnection> m_connection;
};

} // namespace

std::unique_ptr<SoundServer> make_pulse_server(const std::string& application_name)
{
    return std::make_unique<PulseServer>(application_name);
}

} // namespace tessavox::voice
