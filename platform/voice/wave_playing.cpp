#include "platform/voice/wave_playing.h"

#include "platform/voice/file_stream.h"
#include "platform/voice/frame_composer.h"
#include "platform/voice/utterance_events.h"

#include <algorithm>
#include <utility>

namespace tessavox::voice {

namespace {

/// Reads, converts and measures a wave file piece by piece.
class WaveSource {
public:
    explicit WaveSource(Job& job)
        : m_wave(*job.wave)
        , m_composer(job.format)
        , m_samples(static_cast<std::size_t>(std::max(m_wave.rate() / 20, 1))
              * static_cast<std::size_t>(m_wave.channels()))
    {
        m_composer.begin(m_wave.rate(), m_wave.channels(), sound);
    }

    // The next piece is in `sound` and `events`. Returns false with the last one.
    bool next()
    {
        const std::size_t frames = m_wave.read(m_samples);
        if (frames == 0) {
            m_composer.finish(sound);
            events.push_back({ m_composer.frame_of(0), m_next_sequence++, StreamEnded() });
            return false;
        }
        const auto piece
            = std::span(m_samples).first(frames * static_cast<std::size_t>(m_wave.channels()));
        append_levels(
            piece, m_wave.rate(), m_wave.channels(),
            [this](std::uint64_t sample) { return m_composer.frame_of(sample); }, m_next_sequence,
            events);
        m_composer.push(piece, sound);
        return true;
    }

    std::vector<std::byte> sound;
    std::vector<StreamEvent> events;

private:
    WaveReader& m_wave;
    FrameComposer m_composer;
    std::vector<std::int16_t> m_samples;
    std::uint64_t m_next_sequence = 0;
};

void copy_to_file(Playback& playback, EventQueue& events, Job& job, WaveSource& source)
{
    std::vector<StreamEvent> started(1);
    started.front().happening = StreamStarted();
    events.append(job, std::move(started));
    for (bool more = true; more && !job.cancelled;) {
        more = source.next();
        if (!job.file->write(source.sound) && more) {
            // The disk refuses the rest: the stream ends here.
            source.events.push_back(
                { source.events.empty() ? 0 : source.events.back().frame, 0, StreamEnded() });
            more = false;
        }
        source.sound.clear();
        events.append(job, std::exchange(source.events, {}));
    }
    playback.finish(job);
}

} // namespace

void play_wave(Playback& playback, EventQueue& events, Job& job)
{
    WaveSource source(job);
    if (job.file) {
        copy_to_file(playback, events, job, source);
        return;
    }
    for (bool more = true; more && !job.cancelled;) {
        more = source.next();
        // Only a rate change or the job's end refuse a piece, and a wave file has no rate.
        while (!job.cancelled
            && !playback.append(job, playback.rate_version(), source.sound, source.events)) { }
        source.sound.clear();
    }
    playback.complete(job);
    while (playback.holds(job))
        playback.wait_for_order(job, playback.rate_version());
}

} // namespace tessavox::voice
