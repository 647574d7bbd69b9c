// What the menus and the tool bars of the main window do.
#include "app/main_window.h"

#include "documents/document_window.h"
#include "platform/failure.h"

namespace tessavox {

void frmMain::mnuCtlSpeak_Click()
{
    attempt([&] { ActiveForm().SpeakBtn_Click(); });
}

void frmMain::mnuCtlPause_Click()
{
    attempt([&] {
        if (!ActiveForm().m_bPaused())
            ActiveForm().PauseBtn_Click();
        else
            ActiveForm().ResumeBtn_Click();
    });
}

void frmMain::mnuCtlStop_Click()
{
    attempt([&] { ActiveForm().StopBtn_Click(); });
}

void frmMain::mnuCtlclipboard_Click()
{
    attempt([&] { ActiveForm().ReadClipbdBtn_Click(); });
}

void frmMain::mnuCtlSaveClipboardTexttoWav_Click()
{
    attempt([&] { ActiveForm().DockSaveToWave_Click(); });
}

void frmMain::mnuCtlSpeaktofile_Click()
{
    attempt([&] { ActiveForm().SpeaktofileBtn_Click(); });
}

void frmMain::mnuCtlPlay_Click()
{
    attempt([&] { ActiveForm().Play_Click(); });
}

void frmMain::tbToolBar_ButtonClick(int index)
{
    const std::string& key = tbToolBar.button(index).key();
    if (key == "New")
        mnuFileNew_Click();
    else if (key == "Save")
        mnuFileSave_Click();
}

} // namespace tessavox
