// A document: its window, its text, its voice and its own settings panel.
#pragma once

#include "documents/document_recovery.h"
#include "documents/process.h"
#include "forms/document_controls.h"
#include "persist/settings_files.h"
#include "persist/text_file.h"
#include "speech/document_speech.h"
#include "web/web_view.h"

namespace tessavox {

class FileCommands;
struct DockControls;
struct MainControls;

/// There is no document apart from its window. Its Tag is its slot number, its Caption "Document "
/// and that number until it has a file, and then the file's path.
class frmDocument : public DocumentControls {
public:
    frmDocument(Process& process, MainControls& main, DockControls& dock, FileCommands& files);

private:
    PCCFile settingsFile; // the speech reads from it too

public:
    DocumentSpeech speech;
    DocumentRecovery recovery;
    WebView web;

    /// Lays the window out for its text, or for its web page, which the caller says in view_status.
    void control_pos();
    void control_pos2();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Resize() override;
    void Form_Unload(bool& Cancel) override;

private:
    int slot_number() const;
    bool has_default_caption() const;
    void load_speech();
    void load_font();
    void save_settings();
    void offer_to_save(bool& Cancel);
    void show_before_asking();
    void save_before_close();
    void leave_tables();
    void rtfText_Change();
    void rtfText_SelChange();
    void rtfText_MouseUp(int button);
    void Command4_Click();
    void UpdateLineNumberPanel();

    Process& m_process;
    MainControls& m_main;
    DockControls& m_dock;
    FileCommands& m_files;
};

/// The active document. @throws Failure if there is none.
frmDocument& ActiveForm(const Forms& forms);

} // namespace tessavox
