// The File menu: making, saving and closing documents, and ending the program.
#pragma once

#include "documents/process.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessavox {

struct DockControls;
struct MainControls;
class frmDocument;

/// What the one file dialog of the main window keeps between commands.
struct CommonDialog {
    std::string FileName; // the path that Save writes to
    std::string FileTitle; // the same without its folder
};

/// Each command acts on the document that is active when it runs. Slot numbers alone don't tell a
/// document: closing one frees the slot of the start document too, so two open ones can share it.
class FileCommands {
public:
    /// Adds its commands to the File menu.
    FileCommands(Process& process, MainControls& main, DockControls& dock);

    CommonDialog dlgCommonDialog;
    std::int16_t startDocumentIndex = 0; // the slot of the document that the program began with

    /// The slot number of the active document. Without one it makes a document, which isn't counted
    /// in openDocumentCount. @throws Failure if that can't be done either.
    std::int16_t ActiveDocumentIndex();
    /// The window of that slot. @throws Failure likewise.
    frmDocument& active_document();
    /// Opens a file in a new document, as rich text where its name ends in "rtf", otherwise as
    /// plain text. Where it ends in "doc", a word processor's text replaces that of the active
    /// document. What can't be opened leaves that empty. The document gets the path as its caption.
    void LoadDocumentFile(const std::string& path);

    /// A new empty document. Does nothing, without a word, while all slots are taken.
    void mnuFileNew_Click();
    void mnuFileOpen_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    /// Prints the text, or the page where that is in front, without a question.
    void mnuFilePrint_Click();
    void mnuFileClose_Click();
    void mnuFileExit_Click();

private:
    std::shared_ptr<frmDocument> put_document_in_slot(int slot);
    bool shows_page();
    void show_as_page(const std::string& path);
    void load_file(frmDocument& document, const std::string& path, TextKind kind);
    void load_word_processor_document(const std::string& path);
    void save_text(TextKind kind);
    void tell_that_not_written(const std::string& path);
    void save_as();
    void leave_count_if_closing();

    Process& m_process;
    MainControls& m_main;
    DockControls& m_dock;
};

} // namespace tessavox
