// The thread of a voice that makes its sound.
#pragma once

#include "platform/voice/event_queue.h"
#include "platform/voice/file_reading.h"
#include "platform/voice/playback.h"

namespace tessavox::voice {

/// Takes job after job. The markup that SVSFPersistXML leaves in force lives here.
class SynthesisWorker {
public:
    SynthesisWorker(const VoiceCatalog& catalog, Playback& playback, EventQueue& events,
        const RenderHelpers& helpers);
    /// Returns when the playback stops.
    void run();

private:
    void speak(Job& job);

    const VoiceCatalog& m_catalog;
    Playback& m_playback;
    EventQueue& m_events;
    const RenderHelpers m_helpers;
    MarkupStatePtr m_persisted;
};

} // namespace tessavox::voice
