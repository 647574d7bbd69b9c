// The Edit menu: the clipboard, Select All and the Find dialog.
#pragma once

#include "documents/process.h"
#include "forms/main_controls.h"

#include <memory>

namespace tessavox {

class frmFind;

/// Each command acts on the text of the document that is active when it runs, also of one that
/// shows its web page. Copies are plain text.
class EditCommands {
public:
    /// Adds its commands to the Edit menu.
    EditCommands(Process& process, MainControls& main);
    ~EditCommands();

    void mnuEditCut_Click();
    void mnuEditCopy_Click();
    /// A copied text that is the source of a rich text comes in as that text.
    void mnuEditPaste_Click();
    void mnuEditSelectAll_Click();
    void mnuEditFind_Click();
    /// Closes the Find dialog.
    void unload();

private:
    Process& m_process;
    MainControls& m_main;
    std::shared_ptr<frmFind> m_find;
};

} // namespace tessavox
