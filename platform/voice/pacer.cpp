#include "platform/voice/pacer.h"

#include "platform/failure.h"
#include "platform/voice/stream.h"

#include <algorithm>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace tessavox::voice {

namespace {

using std::chrono::milliseconds;

// A device is let go a little after the last word, as the next stream may follow at once.
constexpr milliseconds sink_kept_open{ 400 };
constexpr milliseconds shortest_sleep{ 1 };
// While the position stands still: before the sound has started, or when the device hangs.
constexpr milliseconds sleep_without_progress{ 4 };
// A clock doesn't call when it has room again.
constexpr milliseconds room_poll{ 20 };
// A position that stands for so long, though there is sound, is a device that hangs. One that has
// just been opened may have to wake up first.
constexpr milliseconds longest_stand{ 900 };
constexpr milliseconds longest_start{ 3000 };
// A device starts when it has so much.
constexpr milliseconds smooth_start{ 40 };
constexpr milliseconds between_attempts{ 500 };
constexpr milliseconds watching{ 100 };
constexpr milliseconds server_hangs_after{ 500 };
constexpr milliseconds absence_worth_telling{ 3000 };

constexpr Wakeup::Clock::time_point no_deadline = Wakeup::Clock::time_point::max();

class Pacer {
public:
    Pacer(Playback& playback, EventQueue& events, std::shared_ptr<SoundServer> server)
        : m_playback(playback)
        , m_events(events)
        , m_server(std::move(server))
    {
    }
    /// Returns when the playback stops.
    void run()
    {
        for (;;) {
            const Playback::Orders orders = m_playback.orders();
            if (orders.stopping) {
                m_sink.reset();
                return;
            }
            if (orders.flush && m_sink)
                m_sink->flush();
            if (orders.job != m_job)
                begin(orders.job);
            m_playback.pacer().wait_until(m_job ? play(orders) : rest());
        }
    }

private:
    using Time = Wakeup::Clock::time_point;
    struct Opening {
        std::shared_ptr<Job> job; // for which
        Time since;
        std::future<std::unique_ptr<AudioSink>> sink;
    };

    void begin(const std::shared_ptr<Job>& job)
    {
        m_job = job;
        m_stream.reset();
        m_finished = false;
        m_heard = m_taken = m_owed = m_heard_last_look = 0;
        m_due = {};
        m_resting_since.reset();
        if (!job)
            return;
        m_stream.emplace(job, m_playback, m_events);
        if (m_opening
            && (m_opening->job->format != job->format || m_opening->job->output != job->output))
            m_opening.reset();
        const bool fits = m_sink && m_sink->alive() && !m_sink_is_clock
            && m_sink->format() == job->format && m_sink_output == job->output;
        if (!fits)
            m_sink.reset();
        else
            m_stream_to_sink = static_cast<std::int64_t>(m_sink->played());
        m_moved_at = Wakeup::Clock::now();
    }
    Time play(const Playback::Orders& orders)
    {
        hold(orders.paused);
        if (orders.skip) {
            if (m_sink)
                m_sink->flush();
            m_taken = heard();
            m_owed = 0;
            m_finished = false;
            release();
            m_playback.dropped_unheard(*m_job, m_taken);
        }
        if (!orders.paused) {
            m_stream->start();
            if (has_sink())
                feed();
        }
        if (m_stream->started() && release()) {
            m_stream->end(m_heard);
            return Wakeup::Clock::now(); // the next job may be there
        }
        return orders.paused ? no_deadline : next_look(m_due);
    }
    Time rest()
    {
        const Time now = Wakeup::Clock::now();
        if (!m_resting_since)
            m_resting_since = now;
        if (m_sink && now < *m_resting_since + sink_kept_open)
            return *m_resting_since + sink_kept_open;
        m_sink.reset();
        return no_deadline;
    }
    void hold(bool paused)
    {
        if (!m_sink || paused == m_sink_paused)
            return;
        m_sink_paused = paused;
        m_moved_at = Wakeup::Clock::now();
        if (paused)
            m_sink->pause();
        else
            m_sink->resume();
    }
    // On a thread that nobody waits for: a server that hangs holds up neither the words nor the end
    // of the voice.
    void begin_opening()
    {
        std::promise<std::unique_ptr<AudioSink>> promise;
        m_opening = { m_job, Wakeup::Clock::now(), promise.get_future() };
        std::thread([server = m_server, format = m_job->format, output = m_job->output,
                        pacer = m_playback.shared_pacer(), promise = std::move(promise)]() mutable {
            std::unique_ptr<AudioSink> sink;
            attempt([&] { sink = server->open(format, output, [pacer] { pacer->notify(); }); });
            promise.set_value(std::move(sink));
            pacer->notify();
        }).detach();
    }
    /// What was opened, perhaps nothing, once that is over.
    std::optional<std::unique_ptr<AudioSink>> opened()
    {
        if (m_opening->sink.wait_for(milliseconds(0)) != std::future_status::ready)
            return std::nullopt;
        return std::exchange(m_opening, std::nullopt)->sink.get();
    }
    // False while it is being opened. A server that hangs has kept one stream waiting; no other one
    // waits for it.
    bool has_sink()
    {
        if (m_sink)
            return true;
        if (!m_opening && !m_server_hangs)
            begin_opening();
        auto sink = m_opening ? opened() : std::nullopt;
        m_server_hangs = m_server_hangs
            || (!sink && Wakeup::Clock::now() > m_opening->since + server_hangs_after);
        if (sink && *sink)
            play_on_device(std::move(*sink));
        else if (sink || m_server_hangs)
            play_by_the_clock();
        return m_sink != nullptr;
    }
    void feed()
    {
        heard();
        if (sink_is_lost()) {
            m_server_hangs = m_sink->alive();
            play_by_the_clock();
        }
        if (m_sink_is_clock)
            look_for_device();
        const auto align = static_cast<std::size_t>(m_job->format.block_align());
        const std::byte silence{ static_cast<unsigned char>(m_job->format.bits == 8 ? 128 : 0) };
        for (;;) {
            const std::size_t room = m_sink->writable();
            m_buffer.clear();
            const auto owed = static_cast<std::size_t>(std::min<std::uint64_t>(room, m_owed));
            m_buffer.resize(owed * align, silence);
            m_owed -= owed;
            const bool last = m_playback.take_sound(*m_job, room - owed, m_buffer) && m_owed == 0;
            const std::size_t frames = m_buffer.size() / align;
            m_taken += frames - owed;
            m_stream->level(std::span(m_buffer).subspan(owed * align));
            if (frames > 0) {
                m_sink->write(m_buffer);
                m_finished = false;
            }
            if (last && !std::exchange(m_finished, true))
                m_sink->finish();
            if (frames == 0 || frames == room)
                return;
        }
    }
    bool sink_is_lost() const
    {
        const bool hangs = !m_sink_is_clock
            && Wakeup::Clock::now() - m_moved_at > (m_has_moved ? longest_stand : longest_start);
        return hangs || !m_sink->alive();
    }
    // The words go on as if they were heard: what the last one had taken with it is paid in
    // silence.
    void play_on(std::unique_ptr<AudioSink> sink)
    {
        m_sink = std::move(sink);
        m_sink_is_clock = m_sink_paused = m_finished = m_has_moved = false;
        m_sink_output = m_job->output;
        m_stream_to_sink = -static_cast<std::int64_t>(m_heard);
        m_owed = m_taken - m_heard;
        m_moved_at = Wakeup::Clock::now();
    }
    void play_on_device(std::unique_ptr<AudioSink> sink)
    {
        play_on(std::move(sink));
        m_absent_since.reset();
        m_server_hangs = false;
        if (std::exchange(m_absence_told, false))
            m_events.tell_output(true);
    }
    void play_by_the_clock()
    {
        play_on(make_clock_sink(m_job->format));
        m_sink_is_clock = true;
        m_absent_since = m_absent_since.value_or(m_moved_at);
        m_next_attempt = m_moved_at + between_attempts;
    }
    void look_for_device()
    {
        const Time now = Wakeup::Clock::now();
        if (now - *m_absent_since > absence_worth_telling && !std::exchange(m_absence_told, true))
            m_events.tell_output(false);
        if (!m_opening && now < m_next_attempt)
            return;
        if (!m_opening)
            begin_opening();
        if (auto sink = opened()) {
            m_next_attempt = now + between_attempts;
            if (*sink)
                play_on_device(std::move(*sink));
        }
    }
    std::uint64_t heard()
    {
        if (m_sink && m_sink->alive()) {
            const std::int64_t frame
                = static_cast<std::int64_t>(m_sink->played()) - m_stream_to_sink;
            const std::uint64_t counted = frame > 0 ? static_cast<std::uint64_t>(frame) : 0;
            const std::uint64_t before = m_heard;
            m_heard = std::clamp(counted, m_heard, std::max(m_heard, m_taken));
            const auto start
                = static_cast<std::uint64_t>(m_job->format.rate * smooth_start.count() / 1000);
            // A server that hangs takes nothing more, while the position may run on to what it has.
            const bool has_sound
                = m_due.sound_waits || m_taken - m_heard > (m_finished ? 0 : start);
            m_has_moved = m_has_moved || m_heard > before;
            if (m_heard > before || m_sink_paused || !has_sound)
                m_moved_at = Wakeup::Clock::now();
        }
        return m_heard;
    }
    // Sends what is due. Returns whether the stream is over.
    bool release()
    {
        m_due = m_playback.due(*m_job, heard());
        m_stream->tell(std::move(m_due.events));
        return m_due.ended;
    }
    Time next_look(const Playback::Due& due)
    {
        const Time now = Wakeup::Clock::now();
        const bool watched = m_sink_is_clock || m_taken > m_heard;
        Time look = due.sound_waits ? now + room_poll : watched ? now + watching : no_deadline;
        if (due.next) {
            const std::uint64_t frames = *due.next + 1 > m_heard ? *due.next + 1 - m_heard : 0;
            const std::chrono::duration<double> wait(
                static_cast<double>(frames) / static_cast<double>(m_job->format.rate));
            look = std::min(look, now + std::chrono::ceil<Wakeup::Clock::duration>(wait));
        }
        if (!m_sink && m_opening)
            look = std::min(look, m_opening->since + server_hangs_after);
        const bool stands = std::exchange(m_heard_last_look, m_heard) == m_heard;
        return std::max(look, now + (stands ? sleep_without_progress : shortest_sleep));
    }

    Playback& m_playback;
    EventQueue& m_events;
    const std::shared_ptr<SoundServer> m_server;

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
    std::optional<Opening> m_opening;
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

} // namespace

void run_pacer(Playback& playback, EventQueue& events, std::shared_ptr<SoundServer> server)
{
    Pacer(playback, events, std::move(server)).run();
}

} // namespace tessavox::voice
