// Whether a document is being read and whether that is paused, the operations that change it, and
// the one routine through which every change passes.
#pragma once

#include "platform/speech_voice.h"

#include <memory>
#include <string>

namespace tessavox {

struct DocumentControls;
struct MainControls;
struct frmDockDemo;

/// Where the error and trace texts of the speech core end. They never reach the user, so the
/// body is empty and stays empty.
inline void ReportDebugText(const std::string&, const std::string&) { }

/// The voice of a document, from the load of its window to its close.
class DocumentVoice {
public:
    void create(SpeechService& service, SpeechVoiceEvents& events)
    {
        m_voice = service.create_voice(events);
    }
    void release() { m_voice.reset(); }
    /// @throws Failure where there is no voice: before the load, and after a close, which a window
    /// survives if the user cancels it.
    SpeechVoice* operator->() const;

private:
    std::unique_ptr<SpeechVoice> m_voice;
};

/// The three windows whose controls follow a reading.
struct SpeechWindows {
    DocumentControls& document;
    frmDockDemo& dock;
    MainControls& main;
};

class SpeechSession {
public:
    SpeechSession(SpeechWindows windows, DocumentVoice& Voice)
        : m_windows(windows)
        , Voice(Voice)
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

    SpeechWindows m_windows;
    DocumentVoice& Voice;
    bool m_speaking = false;
    bool m_paused = false;
};

} // namespace tessavox
