#include "platform/voice/synthesis_worker.h"

#include "platform/voice/live_reading.h"
#include "platform/voice/wave_playing.h"

namespace tessavox::voice {

SynthesisWorker::SynthesisWorker(const VoiceCatalog& catalog, Playback& playback,
    EventQueue& events, const RenderHelpers& helpers)
    : m_catalog(catalog)
    , m_playback(playback)
    , m_events(events)
    , m_helpers(helpers)
{
}

void SynthesisWorker::run()
{
    while (const std::shared_ptr<Job> job = m_playback.take_job())
        speak(*job);
}

void SynthesisWorker::speak(Job& job)
{
    if (job.wave)
        play_wave(m_playback, m_events, job);
    else if (job.file)
        FileReading(m_catalog, m_playback, m_events, job, m_persisted).run(m_helpers);
    else
        LiveReading(m_catalog, m_playback, job, m_persisted).run();
}

} // namespace tessavox::voice
