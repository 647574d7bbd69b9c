#include "platform/voice/synthesis_worker.h"

#include "platform/speech_voice.h"
#include "platform/voice/file_stream.h"
#include "platform/voice/stream.h"
#include "platform/voice/text_source.h"
#include "platform/voice/utterance_events.h"

#include <algorithm>
#include <malloc.h>
#include <utility>

namespace tessavox::voice {

namespace {

constexpr std::size_t large_units = 1'000'000; // a save of minutes

/// A wave file that the voice plays.
class WaveSource : public SoundSource {
public:
    /// `interests`: whether the levels are measured.
    WaveSource(const Job& job, std::int32_t interests)
        : m_wave(*job.wave)
        , m_measures((interests & SVEAudioLevel) != 0)
        , m_converter(job.format)
        , m_samples(static_cast<std::size_t>(std::max(m_wave.rate() / 20, 1))
              * static_cast<std::size_t>(m_wave.channels()))
    {
        std::vector<std::byte> nothing;
        m_converter.begin(m_wave.rate(), m_wave.channels(), nothing);
    }
    bool next(Piece& piece, const std::function<bool()>& interrupted) override
    {
        if (interrupted())
            return true;
        const std::size_t frames = m_wave.read(m_samples);
        if (frames == 0) {
            m_converter.finish(piece.sound);
            return false;
        }
        const auto read
            = std::span(m_samples).first(frames * static_cast<std::size_t>(m_wave.channels()));
        if (m_measures)
            append_levels(
                read, m_wave.rate(), m_wave.channels(),
                [this](std::uint64_t sample) { return m_converter.frame_of(sample); },
                m_next_sequence, piece.events);
        m_converter.push(read, piece.sound);
        return true;
    }

private:
    WaveReader& m_wave;
    const bool m_measures;
    Converter m_converter;
    std::vector<std::int16_t> m_samples;
    std::uint64_t m_next_sequence = 0;
};

/// Fills the ring, from which the pacer plays, and hands the source the orders that come meanwhile.
class Player {
public:
    Player(SoundSource& source, Playback& playback, const Job& job)
        : m_source(source)
        , m_playback(playback)
        , m_job(job)
    {
    }
    void run()
    {
        for (;;) {
            // Looked at before the job is, so that its end is never waited through: that raises it.
            const int seen = std::exchange(m_seen, m_playback.order_version());
            if (!m_playback.holds(m_job))
                return;
            if (seen != m_seen)
                take_orders();
            if (m_rate_changed)
                follow_rate();
            if (!m_piece.empty())
                send();
            else if (m_more)
                make();
            else
                wait();
        }
    }

private:
    void take_orders()
    {
        m_rate_changed = std::exchange(m_rate, m_playback.rate()) != m_rate || m_rate_changed;
        if (const auto skip = m_playback.take_skip(m_job)) {
            m_piece.clear();
            for (const int count : skip->counts)
                m_source.skip(count, skip->frame);
            m_more = true;
        }
    }
    // A place that is made but not in the ring yet is looked for again when more is there.
    void follow_rate()
    {
        const auto cut = m_source.follow_rate(m_playback.changeable_from(m_job));
        m_rate_changed = cut.has_value();
        if (!cut || !m_playback.cut(m_job, cut->frame, cut->sequence))
            return;
        m_piece.clear();
        m_source.take_back(*cut);
        m_more = true;
        m_rate_changed = false;
    }
    void make()
    {
        m_source.settle(m_playback.changeable_from(m_job));
        m_more = m_source.next(m_piece, [this] { return m_playback.order_version() != m_seen; });
    }
    void send()
    {
        if (m_playback.append(m_job, m_seen, m_piece.sound, m_piece.events))
            m_piece.clear();
    }
    void wait()
    {
        m_playback.complete(m_job);
        if (!m_rate_changed)
            m_playback.wait_for_order(m_job, m_seen);
    }

    SoundSource& m_source;
    Playback& m_playback;
    const Job& m_job;
    Piece m_piece; // made, not in the ring yet
    bool m_more = true;
    int m_seen = -1; // orders, none
    int m_rate = m_playback.rate();
    bool m_rate_changed = false;
};

/// Writes as fast as it can; nothing is paced, and a pause, which holds the sound, does not hold
/// it. A purge ends it where it is.
void write(SoundSource& source, Stream& stream)
{
    const Job& job = stream.job();
    const auto align = static_cast<std::size_t>(job.format.block_align());
    std::uint64_t frames = 0;
    Piece piece;
    stream.start();
    for (bool more = true; more && !job.cancelled; piece.clear()) {
        more = source.next(piece, [&job] { return job.cancelled.load(); });
        stream.level(piece.sound);
        // Where the disk refuses the rest the stream ends.
        more = (piece.sound.empty() || job.file->write(piece.sound)) && more;
        frames += piece.sound.size() / align;
        stream.tell(std::move(piece.events));
    }
    stream.end(frames);
}

/// Takes job after job. The markup that SVSFPersistXML leaves in force lives here.
class SynthesisWorker {
public:
    SynthesisWorker(SpeechEngines& engines, Playback& playback, EventQueue& events)
        : m_engines(engines)
        , m_playback(playback)
        , m_events(events)
    {
    }
    /// Returns when the playback stops.
    void run()
    {
        while (std::shared_ptr<Job> job = m_playback.take_job()) {
            speak(job);
            const bool large = job->file && job->text.size() > large_units;
            job.reset();
            if (large)
                malloc_trim(0); // the allocator keeps what many small pieces have left
        }
    }

private:
    void speak(const std::shared_ptr<Job>& job)
    {
        if (!job->wave) {
            speak_text(job);
            return;
        }
        WaveSource source(*job, m_events.interests());
        bring(source, job);
    }
    void speak_text(const std::shared_ptr<Job>& job)
    {
        const std::unique_ptr<RenderQueue> engines
            = job->file ? m_engines.file_queue(job->text.size()) : m_engines.live_queue();
        TextSource source(*m_engines.voices(), m_playback, *job, *engines,
            job->file ? Pace::Fast : Pace::Live, m_events.interests(), m_persisted);
        m_playback.set_awaited(engines.get());
        bring(source, job);
        m_playback.set_awaited(nullptr);
    }
    void bring(SoundSource& source, const std::shared_ptr<Job>& job)
    {
        if (!job->file) {
            Player(source, m_playback, *job).run();
            return;
        }
        Stream stream(job, m_playback, m_events);
        write(source, stream);
    }

    SpeechEngines& m_engines;
    Playback& m_playback;
    EventQueue& m_events;
    MarkupStatePtr m_persisted;
};

} // namespace

void run_synthesis(SpeechEngines& engines, Playback& playback, EventQueue& events)
{
    SynthesisWorker(engines, playback, events).run();
}

} // namespace tessavox::voice
