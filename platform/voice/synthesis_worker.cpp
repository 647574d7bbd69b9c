#include "platform/voice/synthesis_worker.h"

#include "platform/voice/destinations.h"
#include "platform/voice/text_source.h"
#include "platform/voice/wave_source.h"

namespace tessavox::voice {

SynthesisWorker::SynthesisWorker(SpeechEngines& engines, Playback& playback, EventQueue& events)
    : m_engines(engines)
    , m_playback(playback)
    , m_events(events)
{
}

void SynthesisWorker::run()
{
    while (const std::shared_ptr<Job> job = m_playback.take_job())
        speak(job);
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
