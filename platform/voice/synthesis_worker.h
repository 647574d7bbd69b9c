// The thread of a voice that makes its sound.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound_source.h"
#include "platform/voice/speech_engines.h"

namespace tessavox::voice {

/// Takes job after job. The markup that SVSFPersistXML leaves in force lives here.
class SynthesisWorker {
public:
    SynthesisWorker(SpeechEngines& engines, Playback& playback, EventQueue& events);
    /// Returns when the playback stops.
    void run();

private:
    void speak(const std::shared_ptr<Job>& job);
    void speak_text(const std::shared_ptr<Job>& job);
    void bring(SoundSource& source, const std::shared_ptr<Job>& job);

    SpeechEngines& m_engines;
    Playback& m_playback;
    EventQueue& m_events;
    MarkupStatePtr m_persisted;
};

} // namespace tessavox::voice
