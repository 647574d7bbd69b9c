// All that is spoken of one document: its voice, the state of its reading, and what starts and ends
// one.
#pragma once

#include "persist/text_file.h"
#include "platform/platform.h"
#include "speech/document_voice.h"
#include "speech/reading.h"
#include "speech/speak_flags.h"
#include "speech/speech_session.h"
#include "speech/voice_events.h"
#include "speech/voice_panel.h"
#include "speech/wave_file.h"

#include <cstdint>
#include <string>

namespace tessavox {

/// What a reading leaves for the events that follow it.
struct ReadingPlace {
    std::int32_t position = 0; // where in rtfText the spoken text begins
    std::int16_t view_status = 0; // 1: text pane in front, 2: web pane
    std::int16_t isReadClipbd = 0; // 1: words move the selection. It is no clipboard reading then.
};

/// The parts know one another through it, and nothing of the window but its controls.
class DocumentSpeech {
public:
    /// `settings` is the document's reader of settings files, `ConfigFolder` where they lie.
    DocumentSpeech(const SpeechWindows& windows, Platform& platform, PCCFile& settings,
        const std::string& ConfigFolder);
    ~DocumentSpeech();

    /// @throws Failure if no voice can be made.
    void create_voice() { Voice.create(platform.speech, m_events); }

    const SpeechWindows windows;
    Platform& platform;
    DocumentVoice Voice;
    ReadingPlace place;
    SpeechSession session;
    SpeakFlags flags;
    VoicePanel panel;
    Reading reading;
    WaveFile wave_file;

private:
    VoiceEvents m_events;
};

} // namespace tessavox
