#include "speech/control_commands.h"

#include "forms/command_table.h"
#include "speech/document_speech.h"

namespace tessavox {

namespace {

using M = MainControls;
using Speech = DocumentSpeech;

void mnuCtlPause_Click(Speech& speech)
{
    if (!speech.session.m_bPaused())
        speech.session.PauseBtn_Click();
    else
        speech.session.ResumeBtn_Click();
}

constexpr CommandRow<Speech> commands[] = {
    { &M::mnuCtlSpeak, 1102, "Ctrl+F5", [](Speech& speech) { speech.reading.SpeakBtn_Click(); } },
    { &M::mnuCtlPause, 1104, "Ctrl+F6", mnuCtlPause_Click },
    { &M::mnuCtlStop, 1103, "Ctrl+F7", [](Speech& speech) { speech.session.StopBtn_Click(); } },
    { &M::mnuCtlsep4 },
    { &M::mnuCtlclipboard, 1105, "Ctrl+F8",
        [](Speech& speech) { speech.reading.ReadClipbdBtn_Click(); } },
    { &M::mnuCtlSaveClipboardTexttoWav, 1108, "Ctrl+F12",
        [](Speech& speech) { speech.wave_file.DockSaveToWave_Click(); } },
    { &M::mnuCtlsep1 },
    { &M::mnuCtlSpeaktofile, 1106, "",
        [](Speech& speech) { speech.wave_file.SpeaktofileBtn_Click(); } },
    { &M::mnuCtlPlay, 1107, "Ctrl+F11", [](Speech& speech) { speech.wave_file.Play_Click(); } },
    { &M::mnuCtlFile2 },
};

} // namespace

void add_control_commands(MainControls& main, const std::function<DocumentSpeech&()>& active)
{
    add_commands<Speech>(main, main.mnuCtl, commands, active);
}

} // namespace tessavox
