#include "documents/file_commands.h"

#include "documents/document_window.h"
#include "documents/menu_enablement.h"
#include "forms/command_table.h"
#include "platform/number_text.h"

namespace tessavox {

namespace {

constexpr double new_document_points = 12;

using M = MainControls;
using F = FileCommands;

constexpr CommandRow<F> commands[] = {
    { &M::mnuFileNew, 1001, "Ctrl+N", call<&F::mnuFileNew_Click> },
    { &M::mnuFileBar0 },
    { &M::mnuFileSave, 1003, "Ctrl+S", call<&F::mnuFileSave_Click>, with_document },
    { &M::mnuFileSaveAs, 1004, "", call<&F::mnuFileSaveAs_Click>, with_document },
    { &M::mnuFilePrint, 1005, "Ctrl+P", nullptr, with_document },
    { &M::mnuFileBar3 },
    { &M::mnuFileClose, 1006, "", call<&F::mnuFileClose_Click>, with_document },
    { &M::mnuFileExit, 1007, "Ctrl+Q", call<&F::mnuFileExit_Click> },
};

std::string title_of(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

} // namespace

FileCommands::FileCommands(Process& process, MainControls& main, DockControls& dock)
    : m_process(process)
    , m_main(main)
    , m_dock(dock)
{
    add_commands<F>(main, main.mnuFile, commands, [this]() -> F& { return *this; });
}

std::int16_t FileCommands::ActiveDocumentIndex()
{
    if (m_process.forms.active_child())
        return static_cast<std::int16_t>(leading_number(ActiveForm(m_process.forms).Tag.get()));
    DocumentTables& tables = m_process.tables;
    tables.newDocumentIndex = tables.NextFreeDocumentSlot();
    if (tables.newDocumentIndex != -1)
        put_document_in_slot(tables.newDocumentIndex);
    const std::string tag = ActiveForm(m_process.forms).Tag;
    setmenu(m_process, m_main);
    return static_cast<std::int16_t>(leading_number(tag));
}

/// The active document, made if there is none. @throws Failure if that can't be done.
frmDocument& FileCommands::active_document()
{
    ActiveDocumentIndex();
    return ActiveForm(m_process.forms);
}

std::shared_ptr<frmDocument> FileCommands::put_document_in_slot(int slot)
{
    DocumentTables& tables = m_process.tables;
    auto document = std::make_shared<frmDocument>(m_process, m_main, m_dock, *this);
    // Its activation will come before it has its number, so what the last document in the slot has
    // left is cleared here; but not what one that is still open needs.
    if (!tables.documentWindows[slot - 1])
        tables.documentChanged[slot] = false;
    tables.documentWindows[slot - 1] = document;
    document->Load(); // before its Tag is set, so nothing in the load may depend on that
    document->Caption = "Document " + std::to_string(slot);
    document->Tag = std::to_string(slot);
    return document;
}

void FileCommands::mnuFileNew_Click()
{
    DocumentTables& tables = m_process.tables;
    tables.newDocumentIndex = tables.NextFreeDocumentSlot();
    if (tables.newDocumentIndex == -1)
        return;
    const auto document = put_document_in_slot(tables.newDocumentIndex);
    attempt([&] { tables.documentFileTitles[ActiveDocumentIndex() - 1].clear(); });
    document->control_pos();
    ++tables.openDocumentCount;
    setmenu(m_process, m_main);
    attempt_each([&] { document->rtfText->set_SelFontSize(new_document_points); },
        [&] { document->rtfText.SetFocus(); });
}

void FileCommands::LoadDocumentFile(const std::string& path)
{
    mnuFileNew_Click();
    attempt([&] {
        const std::string text = m_process.platform.files.read(path);
        m_process.tables.fileLoading = true; // the change that follows is none of the user's
        active_document().rtfText->set_Text(to_utf16(text));
    });
    attempt([&] { active_document().Caption = path; });
}

/// The caption says whether there is a path, and the dialog keeps which.
void FileCommands::mnuFileSave_Click()
{
    std::string caption;
    attempt([&] { caption = active_document().Caption; });
    if (caption.empty() || caption.starts_with("Document")
        || caption == m_process.ConfigFolder + "/first.txt") {
        mnuFileSaveAs_Click();
        return;
    }
    attempt([&] { save_text(); });
    attempt([&] { m_process.tables.documentChanged[ActiveDocumentIndex()] = false; });
    leave_count_if_closing();
}

/// Writes the text of the active document to the dialog's path. @throws Failure if it can't be
/// written, and tells the user so before: the document counts as saved all the same, and the text
/// may be gone with its window next.
void FileCommands::save_text()
{
    const std::string& path = dlgCommonDialog.FileName;
    const TextSlice text = active_document().rtfText->Text();
    try {
        m_process.platform.files.write(path, to_utf8(text.view()), Durability::durable);
    } catch (const Failure&) {
        m_process.platform.message_boxes.show(m_process.platform.texts.with_value(2303, path),
            application_title, MessageButtons::ok, MessageIcon::none);
        throw;
    }
}

void FileCommands::mnuFileSaveAs_Click()
{
    FileDialogRequest request;
    // Rich text is missing here until documents can be written as such.
    attempt([&] { request.Filter = m_process.platform.texts.LoadResString(2310); });
    request.FileName = dlgCommonDialog.FileName;
    request.overwrite_prompt = true;
    if (const auto chosen = m_process.platform.dialogs.ShowSave(request)) {
        dlgCommonDialog.FileName = *chosen;
        dlgCommonDialog.FileTitle = title_of(*chosen);
    }
    // A cancelled dialog still holds the path of before, and the text goes there.
    if (dlgCommonDialog.FileName.empty())
        return;
    attempt([&] { save_as(); });
    leave_count_if_closing();
}

void FileCommands::save_as()
{
    save_text();
    const std::int16_t index = ActiveDocumentIndex();
    m_process.tables.documentChanged[index] = false;
    active_document().Caption = dlgCommonDialog.FileName;
    m_process.tables.documentFileTitles[index - 1] = dlgCommonDialog.FileTitle;
}

// A document that is saved because it closes doesn't leave the count by itself.
void FileCommands::leave_count_if_closing()
{
    if (!m_process.tables.closingSave)
        return;
    --m_process.tables.openDocumentCount;
    setmenu(m_process, m_main);
}

// The slot that is freed here is that of the start document, whichever was closed; the closed one
// frees its own. A start document that is still open can lose its table entry to the next one.
void FileCommands::mnuFileClose_Click()
{
    attempt_each([&] { ActiveForm(m_process.forms).Unload(); },
        [&] { m_process.tables.documentSlotUsed[startDocumentIndex - 1] = false; });
    setmenu(m_process, m_main);
}

void FileCommands::mnuFileExit_Click()
{
    m_main.Unload();
}

} // namespace tessavox
