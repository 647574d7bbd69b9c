#include "platform/voice/synthesis_worker.h"

#include "platform/voice/destinations.h"
#include "platform/voice/text_source.h"
#include "platform/voice/wave_source.h"

#include <malloc.h>

namespace tessavox::voice {

namespace {

constexpr std::size_t large_units = 1'000'000; // a save of minutes

} // namespace

SynthesisWorker::SynthesisWorker(SpeechEngines& engines, Playback& playback, EventQueue& events)
    : m_engines(engines)
    , m_playback(playback)
    , m_events(events)
{
}

void SynthesisWorker::run()
{
    while (std::shared_ptr<Job> job = m_playback.take_job()) {
        speak(job);
        const bool large = job->file && job->text.size() > large_units;
        job.reset();
        if (large)
            malloc_trim(0); // the allocator keeps what many small pieces have left
    }
}

void SynthesisWorker::speak(const std::shared_ptr<Job>& job)
{
    if (!job->wave) {
        speak_text(job);
        return;
    }
    WaveSource source(*job, m_events.interests());
    bring(source, job);
}

void SynthesisWorker::speak_text(const std::shared_ptr<Job>& job)
{
    const std::unique_ptr<RenderQueue> engines
        = job->file ? m_engines.file_queue(job->text.size()) : m_engines.live_queue();
    TextSource source(*m_engines.voices(), m_playback, *job, *engines,
        job->file ? Pace::Fast : Pace::Live, m_events.interests(), m_persisted);
    m_playback.set_awaited(engines.get());
    bring(source, job);
    m_playback.set_awaited(nullptr);
}

void SynthesisWorker::bring(SoundSource& source, const std::shared_ptr<Job>& job)
{
    if (!job->file) {
        play(source, m_playback, *job);
        return;
    }
    Stream stream(job, m_playback, m_events);
    write(source, stream);
}

} // namespace tessavox::voice
