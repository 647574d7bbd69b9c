#include "app/do_functions.h"

#include "documents/document_window.h"

#include <string>

namespace tessavox {

namespace {

void show_normal(MainControls& main)
{
    main.Show();
    main.window_state = WindowState::normal;
}

void read(const CommandTarget& target)
{
    if (!target.main.Visible)
        show_normal(target.main);
    if (target.ActiveForm().SpeakBtn.Enabled)
        target.ActiveForm().speech.reading.SpeakBtn_Click();
}

void pause_or_resume(const CommandTarget& target)
{
    SpeechSession& session = target.ActiveForm().speech.session;
    if (session.m_bSpeaking() && !session.m_bPaused())
        session.PauseBtn_Click();
    else if (session.m_bSpeaking())
        session.ResumeBtn_Click();
}

void change_speed(const CommandTarget& target, int step)
{
    ScrollBar& slider = target.ActiveForm().cpvSlider1;
    slider.Value = slider.Value + step;
    constexpr int speed_panel = 3;
    target.main.sbStatusBar.PanelText(speed_panel)
        = target.platform.texts.LoadResString(2100) + std::to_string(slider.Value);
}

void hide_or_show(const CommandTarget& target)
{
    if (target.main.Visible)
        target.main.Hide();
    else
        show_normal(target.main);
}

/// Acts only while the button of the active document that stands for it is enabled.
template <auto Button, void (*Act)(DocumentSpeech&)> void as_button(const CommandTarget& target)
{
    if ((target.ActiveForm().*Button).Enabled)
        Act(target.ActiveForm().speech);
}

using D = DocumentControls;
using Speech = DocumentSpeech;

struct NumberRow {
    std::uint8_t command;
    void (*run)(const CommandTarget&);
};

constexpr NumberRow numbers[] = {
    { 0, read },
    { 1, pause_or_resume },
    { 2, as_button<&D::StopBtn, [](Speech& speech) { speech.session.StopBtn_Click(); }> },
    { 3,
        as_button<&D::ReadClipbdBtn,
            [](Speech& speech) { speech.reading.ReadClipbdBtn_Click(); }> },
    { 4, [](const CommandTarget& target) { change_speed(target, 1); } },
    { 5, [](const CommandTarget& target) { change_speed(target, -1); } },
    { 6, hide_or_show },
    { 8, as_button<&D::Play, [](Speech& speech) { speech.wave_file.Play_Click(); }> },
    { 9,
        as_button<&D::ReadClipboardtoFile,
            [](Speech& speech) { speech.wave_file.ReadClipboardtoFile_Click(); }> },
};

} // namespace

void DoFunctions(const CommandTarget& target, std::uint8_t command)
{
    target.platform.DoEvents();
    for (const NumberRow& row : numbers) {
        if (row.command == command)
            row.run(target);
    }
}

} // namespace tessavox
