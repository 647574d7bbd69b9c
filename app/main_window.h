// The main window: it holds the documents and leads every command to the active one.
#pragma once

#include "app/handshake.h"
#include "documents/document_window.h"
#include "documents/file_commands.h"
#include "documents/process.h"
#include "forms/dock_controls.h"
#include "forms/main_controls.h"
#include "persist/text_file.h"

#include <memory>

namespace tessavox {

/// Its life; what its menus do is told in the command tables.
class frmMain : public MainControls {
public:
    explicit frmMain(Process& process);

    /// The active document. @throws Failure if there is none.
    frmDocument& ActiveForm() const { return tessavox::ActiveForm(m_process.forms); }

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_Unload(bool& Cancel) override;

private:
    Process& m_process;
    std::shared_ptr<DockControls> m_dock;
    PCCFile m_text_file;

public:
    FileCommands file_commands;

private:
    Handshake m_handshake;
};

} // namespace tessavox
