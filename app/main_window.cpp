#include "app/main_window.h"

#include "app/do_functions.h"
#include "forms/localise_form.h"
#include "forms/skin.h"
#include "persist/settings_files.h"
#include "platform/failure.h"
#include "speech/control_commands.h"
#include "web/web_commands.h"

namespace tessavox {

namespace {

constexpr double start_height_twips = 8000;
constexpr double start_width_twips = 25600; // wider than most screens: the platform fits it

} // namespace

frmMain::frmMain(Process& process)
    : MainControls(process.forms)
    , m_process(process)
    , m_dock(std::make_shared<frmDockDemo>(process.forms, process.platform, *this,
          [this]() -> DocumentSpeech& { return ActiveForm().speech; }))
    , m_text_file(process.platform.files, process.platform.message_boxes, process.platform.texts)
    , m_tray_icon(*this, process.platform)
    , m_keys(process.platform.hot_keys, process.platform.texts,
          [this](std::uint8_t command) {
              DoFunctions(
                  { *this, m_process.platform, [this]() -> frmDocument& { return ActiveForm(); } },
                  command);
          })
    , m_help(process.forms, process.platform, *this)
    , file_commands(process, *this, *m_dock)
    , m_edit(process, *this)
    , m_format(process, *this, file_commands, m_text_file)
    , m_insert(process, *this)
    , m_handshake(process, *this, m_text_file)
{
    add_web_commands(*this, [this]() -> WebView& { return ActiveForm().web; });
    add_control_commands(*this, [this]() -> DocumentSpeech& { return ActiveForm().speech; });
}

void frmMain::Form_Load()
{
    LocaliseForm(*this, m_process.platform.texts);
    show_tool_buttons();
    attempt([&] { tbToolBar.Caption = m_process.platform.texts.LoadResString(2312); });
    attempt([&] { Toolbar2.Caption = m_process.platform.texts.LoadResString(2317); });
    Height = start_height_twips;
    Width = start_width_twips;
    m_process.tables.newDocumentIndex = 0;
    m_process.tables.openDocumentCount = 0;
    // Nobody has changed it, also if the window that would forget that isn't shown.
    m_process.tables.fileLoading = true;
    file_commands.LoadDocumentFile(m_process.AppFolder + "/first.txt");
    m_process.tables.fileLoading = false;
    m_process.find_ConfigFolder();
    attempt([&] { file_commands.startDocumentIndex = file_commands.ActiveDocumentIndex(); });
    apply_skin(*this, m_process.platform.skin, m_process.AppFolder);
    sbStatusBar.Visible = true;
    sbStatusBar.Enabled = true;
    Popmenu.Visible = false;
    m_tray_icon.InstallTrayIcon();
    m_handshake.start();
    m_keys.register_all();
}

void frmMain::Hotkey()
{
    attempt([&] { ActiveForm().speech.reading.ReadClipbdBtn_Click(); });
}

void frmMain::Form_Resize()
{
    if (window_state != WindowState::minimised)
        return;
    // The icon in the tray is the way back to a hidden window; without one it stays minimised.
    Visible = !m_process.platform.tray.has_icon();
}

void frmMain::Form_Unload(bool&)
{
    m_text_file.WriteToFile(
        opened_text(false), m_process.ConfigFolder + opened_file, Durability::fleeting);
    m_tray_icon.RemoveTrayIcon();
    m_keys.unregister_all();
    m_edit.unload();
    m_help.unload();
    m_dock->UnloadWithMain();
    m_insert.unload();
}

} // namespace tessavox
