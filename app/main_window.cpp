#include "app/main_window.h"

#include "documents/document_window.h"
#include "persist/settings_files.h"
#include "platform/failure.h"

namespace tessavox {

namespace {

constexpr double start_height_twips = 8000;
constexpr double start_width_twips = 25600; // wider than most screens: the platform fits it

struct MenuHandlerRow {
    MenuItem MainControls::*item;
    void (frmMain::*Click)();
};

constexpr MenuHandlerRow menu_handlers[] = {
    { &MainControls::mnuFileNew, &frmMain::mnuFileNew_Click },
    { &MainControls::mnuFileSave, &frmMain::mnuFileSave_Click },
    { &MainControls::mnuFileSaveAs, &frmMain::mnuFileSaveAs_Click },
    { &MainControls::mnuFileClose, &frmMain::mnuFileClose_Click },
    { &MainControls::mnuFileExit, &frmMain::mnuFileExit_Click },
    { &MainControls::mnuCtlSpeak, &frmMain::mnuCtlSpeak_Click },
    { &MainControls::mnuCtlPause, &frmMain::mnuCtlPause_Click },
    { &MainControls::mnuCtlStop, &frmMain::mnuCtlStop_Click },
    { &MainControls::mnuCtlclipboard, &frmMain::mnuCtlclipboard_Click },
    { &MainControls::mnuCtlSaveClipboardTexttoWav, &frmMain::mnuCtlSaveClipboardTexttoWav_Click },
    { &MainControls::mnuCtlSpeaktofile, &frmMain::mnuCtlSpeaktofile_Click },
    { &MainControls::mnuCtlPlay, &frmMain::mnuCtlPlay_Click },
};

} // namespace

frmMain::frmMain(Process& process)
    : MainControls(process.forms)
    , m_process(process)
    , m_dock(std::make_shared<frmDockDemo>(process.forms))
    , m_text_file(process.platform.files, process.platform.message_boxes)
{
    for (const MenuHandlerRow& row : menu_handlers)
        (this->*row.item).Click = [this, click = row.Click] { (this->*click)(); };
    tbToolBar.ButtonClick = [this](int index) { tbToolBar_ButtonClick(index); };
}

void frmMain::Form_Load()
{
    Height = start_height_twips;
    Width = start_width_twips;
    m_process.tables.newDocumentIndex = 0;
    m_process.tables.openDocumentCount = 0;
    open_start_document();
    m_process.find_ConfigFolder();
    attempt([&] { startDocumentIndex = ActiveDocumentIndex(); });
    sbStatusBar.Visible = true;
    sbStatusBar.Enabled = true;
    Popmenu.Visible = false;
}

void frmMain::open_start_document()
{
    const std::string path = m_process.AppFolder + "/first.txt";
    mnuFileNew_Click();
    attempt([&] {
        const std::string text = m_process.platform.files.read(path);
        m_process.tables.fileLoading = true; // the change that follows is none of the user's
        document(ActiveDocumentIndex()).rtfText->set_Text(to_utf16(text));
    });
    attempt([&] { document(ActiveDocumentIndex()).Caption = path; });
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
    m_text_file.WriteToFile(opened_text(false), m_process.ConfigFolder + opened_file);
    m_dock->Unload();
}

frmDocument& frmMain::ActiveForm() const
{
    Form* const active = m_process.forms.active_child();
    if (!active)
        throw Failure("no document is active");
    return static_cast<frmDocument&>(*active); // only documents lie in the main window
}

frmDocument& frmMain::document(int slot) const
{
    const std::shared_ptr<frmDocument> document = m_process.tables.documentWindows[slot - 1];
    if (!document)
        throw Failure("no document has the number " + std::to_string(slot));
    return *document;
}

} // namespace tessavox
