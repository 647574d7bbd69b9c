#include "speech/document_speech.h"

#include "forms/document_controls.h"

namespace tessavox {

namespace {

struct ButtonRow {
    CommandButton DocumentControls::*button;
    void (*Click)(DocumentSpeech&);
};

using D = DocumentControls;
using Speech = DocumentSpeech;

constexpr ButtonRow buttons[] = {
    { &D::SpeakBtn, [](Speech& speech) { speech.reading.SpeakBtn_Click(); } },
    { &D::StopBtn, [](Speech& speech) { speech.session.StopBtn_Click(); } },
    { &D::PauseBtn, [](Speech& speech) { speech.session.PauseBtn_Click(); } },
    { &D::ResumeBtn, [](Speech& speech) { speech.session.ResumeBtn_Click(); } },
    { &D::SkipBtn, [](Speech& speech) { speech.session.SkipBtn_Click(); } },
    { &D::SpeaktofileBtn, [](Speech& speech) { speech.wave_file.SpeaktofileBtn_Click(); } },
    { &D::Play, [](Speech& speech) { speech.wave_file.Play_Click(); } },
    { &D::ReadClipbdBtn, [](Speech& speech) { speech.reading.ReadClipbdBtn_Click(); } },
    { &D::ReadClipboardtoFile,
        [](Speech& speech) { speech.wave_file.ReadClipboardtoFile_Click(); } },
    { &D::ResetBtn, [](Speech& speech) { speech.panel.ResetBtn_Click(); } },
};

} // namespace

DocumentSpeech::DocumentSpeech(
    const SpeechWindows& of, Platform& outside, PCCFile& settings, const std::string& ConfigFolder)
    : windows(of)
    , platform(outside)
    , session(windows, Voice, platform.texts)
    , flags(windows.document)
    , panel(*this, settings, ConfigFolder)
    , reading(*this)
    , wave_file(*this)
    , m_events(*this)
{
    for (const ButtonRow& row : buttons)
        (windows.document.*row.button).Click = [this, click = row.Click] { click(*this); };
}

DocumentSpeech::~DocumentSpeech()
{
    Voice.release(); // before what its events go to
}

} // namespace tessavox
