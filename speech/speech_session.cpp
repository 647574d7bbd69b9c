#include "speech/speech_session.h"

#include "forms/dock_controls.h"
#include "forms/document_controls.h"
#include "forms/main_controls.h"
#include "platform/controls/pick.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "speech/debug_text.h"

namespace tessavox {

namespace {

enum class Write { off, on, nothing };
using enum Write;

using SpeechControl = Control& (*)(const SpeechWindows&);

template <class Window> Window& window_of(const SpeechWindows& windows)
{
    if constexpr (std::is_same_v<Window, DocumentControls>)
        return windows.document;
    else if constexpr (std::is_same_v<Window, DockControls>)
        return windows.dock;
    else
        return windows.main;
}

template <auto Member> Control& control(const SpeechWindows& windows)
{
    return pick<Member>(window_of<typename OwnerOf<decltype(Member)>::type>(windows));
}

struct SpeechRow {
    SpeechControl control;
    Write speaking;
    Write idle;
};

using Document = DocumentControls;
using Dock = DockControls;
using Main = MainControls;

constexpr SpeechRow enabled_rows[] = {
    { control<&Document::SpeakBtn>, off, on },
    { control<&Document::StopBtn>, on, off },
    { control<&Document::SkipBtn>, nothing, off },
    { control<&Document::PauseBtn>, on, off },
    { control<&Document::ReadClipbdBtn>, off, on },
    { control<&Document::Play>, off, on },
    { control<&Document::SpeaktofileBtn>, off, on },
    { control<&Document::ReadClipboardtoFile>, off, on },
    { control<&Document::VoiceCB>, off, on },
    { control<&Document::FormatCB>, off, on },
    { control<&Document::cpvSlider2>, off, on },
    { control<&Document::cpvSlider1>, off, on },
    { control<&Document::ResetBtn>, off, on },
    { control<&Dock::StopBtn>, on, off },
    { control<&Dock::PauseBtn>, on, off },
    { control<&Dock::ReadClipbdBtn>, off, on },
    { control<&Dock::SpeaktofileBtn>, off, on },
    { control<&Dock::Play>, off, on },
    { control<&Main::mnuTrayStop>, on, off },
    { control<&Main::mnuTrayPause>, on, off },
    { control<&Main::mnuTrayReadClipboard>, off, on },
    { control<&Main::mnuTrayPlayFile>, off, on },
    { control<&Main::mnuTrayClipboardtoWav>, off, on },
    { control<&Main::mnuPopSpeak>, off, on },
    { control<&Main::mnuPopStop>, on, off },
    { control<&Main::mnuPopPause>, on, off },
    { control<&Main::mnuCtlPause>, on, off },
    { control<&Main::mnuCtlStop>, on, off },
    { control<&Main::mnuCtlSpeak>, off, on },
    { control<&Main::mnuCtlclipboard>, off, on },
    { control<&Main::mnuCtlPlay>, off, on },
    { control<&Main::mnuCtlSaveClipboardTexttoWav>, off, on },
    { control<&Main::mnuCtlSpeaktofile>, off, on },
    { control<&Main::mnuEdit>, off, on },
    { control<&Main::mnuWebsite>, off, on },
    { control<&Main::mnuFile>, off, on },
    { control<&Main::mnuFormat>, off, on },
    { control<&Main::mnuWindow>, off, on },
    { control<&Main::mnuInsert>, off, on },
    { control<&Main::tbToolBar>, off, on },
    { control<&Main::Toolbar2>, off, on },
};

constexpr SpeechControl pause_captions[] = {
    control<&Dock::PauseBtn>,
    control<&Main::mnuCtlPause>,
    control<&Main::mnuTrayPause>,
    control<&Main::mnuPopPause>,
};

} // namespace

void SpeechSession::PauseBtn_Click()
{
    ReportDebugText("Pause", "");
    attempt([&] { Voice->Pause(); });
    UpdateSpeechControls(m_speaking, true);
}

void SpeechSession::ResumeBtn_Click()
{
    ReportDebugText("Resume", "");
    attempt([&] { Voice->Resume(); });
    UpdateSpeechControls(m_speaking, false);
}

void SpeechSession::StopBtn_Click()
try {
    Voice->Speak({}, SVSFPurgeBeforeSpeak);
    if (m_paused)
        Voice->Resume();
    UpdateSpeechControls(false, false);
    m_windows.document.SpeakBtn.Enabled = true;
    m_windows.document.ReadClipbdBtn.Enabled = true;
} catch (const Failure& failure) {
    ReportDebugText("Speak Error: ", failure.what());
}

void SpeechSession::SkipBtn_Click()
try {
    ReportDebugText("Skip", "");
    Voice->Skip("Sentence", to_integer16(m_windows.document.SkipTxtBox.Text.get()));
} catch (const Failure& failure) {
    ReportDebugText("Skip Error: ", failure.what());
}

void SpeechSession::UpdateSpeechControls(bool speaking, bool paused)
{
    for (const SpeechRow& row : enabled_rows) {
        const Write write = speaking ? row.speaking : row.idle;
        if (write != nothing)
            row.control(m_windows).Enabled = write == on;
    }
    if (speaking) {
        show_pause_or_resume(paused);
    } else {
        m_windows.document.PauseBtn.Visible = true;
        m_windows.document.ResumeBtn.Visible = false;
    }
    m_speaking = speaking;
    m_paused = paused;
}

// Captions change while speaking only: after a stop out of a pause the disabled items go on saying
// "Resume" until the next reading.
void SpeechSession::show_pause_or_resume(bool paused)
{
    for (const auto item : pause_captions)
        attempt([&] { item(m_windows).Caption = m_texts.LoadResString(paused ? 2107 : 1131); });
    m_windows.document.PauseBtn.Visible = !paused;
    m_windows.document.ResumeBtn.Visible = paused;
}

} // namespace tessavox
