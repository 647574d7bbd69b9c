// The main window: it holds the documents and leads every command to the active one.
#pragma once

#include "app/main_controls.h"
#include "app/process.h"
#include "desktop/dock_bar.h"
#include "persist/text_file.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessavox {

/// What the one file dialog of the main window keeps between commands.
struct CommonDialog {
    std::string FileName; // the path that Save writes to
    std::string FileTitle; // the same without its folder
};

class frmMain : public MainControls {
public:
    explicit frmMain(Process& process);

    CommonDialog dlgCommonDialog;

    /// The active document. @throws Failure if there is none.
    frmDocument& ActiveForm() const;
    /// The slot number of the active document. Without one it makes a document, which isn't counted
    /// in openDocumentCount. @throws Failure if that can't be done either.
    std::int16_t ActiveDocumentIndex();

    /// A new empty document. Does nothing, without a word, while all slots are taken.
    void mnuFileNew_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    void mnuFileClose_Click();
    void mnuFileExit_Click();
    void mnuCtlSpeak_Click();
    void mnuCtlPause_Click();
    void mnuCtlStop_Click();
    void mnuCtlclipboard_Click();
    void mnuCtlSaveClipboardTexttoWav_Click();
    void mnuCtlSpeaktofile_Click();
    void mnuCtlPlay_Click();

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_Unload(bool& Cancel) override;

private:
    frmDocument& document(int slot) const;
    std::shared_ptr<frmDocument> put_document_in_slot(int slot);
    void open_start_document();
    void save_text();
    void save_as();
    void tbToolBar_ButtonClick(int index);

    Process& m_process;
    std::shared_ptr<frmDockDemo> m_dock;
    PCCFile m_text_file;
    std::int16_t startDocumentIndex = 0;
};

} // namespace tessavox
