#include "desktop/dock_bar.h"

#include "forms/localise_form.h"
#include "forms/skin.h"
#include "speech/document_speech.h"

#include <cmath>
#include <string>

namespace tessavox {

namespace {

constexpr double first_top_twips = 10;
constexpr int left_button = 1;

using D = DockControls;

/// What a button of the bar has the active document do.
struct ButtonRow {
    CommandButton D::*button;
    void (*run)(DocumentSpeech&);
};

constexpr ButtonRow buttons[] = {
    { &D::ReadClipbdBtn, [](DocumentSpeech& speech) { speech.reading.ReadClipbdBtn_Click(); } },
    { &D::StopBtn, [](DocumentSpeech& speech) { speech.session.StopBtn_Click(); } },
    { &D::SpeaktofileBtn, [](DocumentSpeech& speech) { speech.wave_file.DockSaveToWave_Click(); } },
    { &D::Play, [](DocumentSpeech& speech) { speech.wave_file.Play_Click(); } },
};

int rounded(double value)
{
    return static_cast<int>(std::nearbyint(value));
}

} // namespace

frmDockDemo::frmDockDemo(
    Forms& forms, Platform& platform, MainControls& main, std::function<DocumentSpeech&()> active)
    : DockControls(forms)
    , m_platform(platform)
    , m_main(main)
{
    for (const ButtonRow& row : buttons)
        (this->*row.button).Click = [run = row.run, active] { attempt([&] { run(active()); }); };
    PauseBtn.Click = [this] { m_main.mnuCtlPause.run(); };
    Command4.Click = [this] {
        Visible = false;
        m_main.Show();
    };
    hscrollSnapDistance.Change = [this] { hscrollSnapDistance_Change(); };
    hscrollSnapDistance.Scroll = hscrollSnapDistance.Change;
}

clsDockingHandler& frmDockDemo::dockHandler()
{
    if (!m_dockHandler)
        m_dockHandler.emplace(m_platform.screen);
    return *m_dockHandler;
}

void frmDockDemo::Form_Load()
{
    dockHandler().set_ParentForm(this);
    attempt([&] { m_platform.skin.LoadSkin(m_platform.app_folder + skin_file); });
    attempt([&] {
        hscrollSnapDistance.Value
            = rounded(dockHandler().SnapDistance() / m_platform.screen.TwipsPerPixelX());
    });
    dockHandler().set_AlwaysOnTop(true);
    attempt([&] { m_platform.skin.ApplySkin(*this); });
    Top = first_top_twips;
    LocaliseForm(*this, m_platform.texts);
}

void frmDockDemo::hscrollSnapDistance_Change()
{
    const int pixels = hscrollSnapDistance.Value;
    dockHandler().set_SnapDistance(rounded(pixels * m_platform.screen.TwipsPerPixelX()));
    lblSnapDistance.Caption = std::to_string(pixels);
}

void frmDockDemo::Form_MouseDown(int button, float x, float y)
{
    if (button == left_button)
        dockHandler().StartDockDrag(x, y);
}

void frmDockDemo::Form_MouseMove(int buttons, float x, float y)
{
    if (buttons == left_button)
        dockHandler().UpdateDockDrag(x, y);
}

// Without an icon in the tray it stays minimised: then only the task bar leads back to it.
void frmDockDemo::Form_Resize()
{
    if (window_state != WindowState::minimised || !m_platform.tray.has_icon())
        return;
    Visible = false;
    window_state = WindowState::normal; // as it comes back the next time
}

void frmDockDemo::Form_Unload(bool&)
{
    if (!m_main_goes)
        m_main.Show();
    m_dockHandler.reset();
}

void frmDockDemo::UnloadWithMain()
{
    m_main_goes = true;
    Unload();
    m_main_goes = false;
}

} // namespace tessavox
