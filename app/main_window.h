// The main window: it holds the documents and leads every command to the active one.
#pragma once

#include "app/handshake.h"
#include "app/help_commands.h"
#include "desktop/dock_bar.h"
#include "desktop/global_keys.h"
#include "desktop/tray_icon.h"
#include "documents/document_window.h"
#include "documents/edit_commands.h"
#include "documents/file_commands.h"
#include "documents/format_commands.h"
#include "documents/insert_commands.h"
#include "documents/process.h"
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
    /// Reads the clipboard by the active document. For other components; nothing here calls it.
    void Hotkey();

protected:
    void Form_Load() override;
    void Form_Resize() override;
    void Form_Unload(bool& Cancel) override;

private:
    Process& m_process;
    std::shared_ptr<frmDockDemo> m_dock;
    PCCFile m_text_file;
    TrayIcon m_tray_icon;
    GlobalKeys m_keys;
    HelpCommands m_help;

public:
    FileCommands file_commands;

private:
    EditCommands m_edit;
    FormatCommands m_format;
    InsertCommands m_insert;
    Handshake m_handshake;
};

} // namespace tessavox
