// Whether a document is being read and whether that is paused, the operations that change it, and
// the one routine through which every change passes.
#pragma once

#include "platform/texts.h"
#include "speech/document_voice.h"

namespace tessavox {

struct DocumentControls;
struct MainControls;
struct DockControls;

/// The three windows whose controls follow a reading.
struct SpeechWindows {
    DocumentControls& document;
    DockControls& dock;
    MainControls& main;
};

class SpeechSession {
public:
    SpeechSession(const SpeechWindows& windows, DocumentVoice& Voice, const Texts& texts)
        : m_windows(windows)
        , Voice(Voice)
        , m_texts(texts)
    {
    }

    /// A stream was started and has not ended.
    bool m_bSpeaking() const { return m_speaking; }
    bool m_bPaused() const { return m_paused; }

    void PauseBtn_Click();
    void ResumeBtn_Click();
    void StopBtn_Click();
    void SkipBtn_Click();

    /// Sets the controls of all three windows, whichever document is active, and then the two
    /// states, which nothing else sets.
    void UpdateSpeechControls(bool speaking, bool paused);

private:
    void show_pause_or_resume(bool paused);

    const SpeechWindows m_windows;
    DocumentVoice& Voice;
    const Texts& m_texts;
    bool m_speaking = false;
    bool m_paused = false;
};

} // namespace tessavox
