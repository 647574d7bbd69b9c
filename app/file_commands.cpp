// The File menu of the main window.
#include "app/main_window.h"

#include "documents/document_window.h"
#include "persist/number_text.h"
#include "persist/string_table.h"
#include "platform/failure.h"

namespace tessavox {

namespace {

constexpr double new_document_points = 12;

std::string title_of(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

} // namespace

std::int16_t frmMain::ActiveDocumentIndex()
{
    if (!m_process.forms.active_child()) {
        DocumentTables& tables = m_process.tables;
        tables.newDocumentIndex = tables.NextFreeDocumentSlot();
        if (tables.newDocumentIndex != -1)
            put_document_in_slot(tables.newDocumentIndex);
    }
    return static_cast<std::int16_t>(leading_number(ActiveForm().Tag.get()));
}

std::shared_ptr<frmDocument> frmMain::put_document_in_slot(int slot)
{
    DocumentTables& tables = m_process.tables;
    auto document = std::make_shared<frmDocument>(m_process, *this, *m_dock);
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

void frmMain::mnuFileNew_Click()
{
    DocumentTables& tables = m_process.tables;
    tables.newDocumentIndex = tables.NextFreeDocumentSlot();
    if (tables.newDocumentIndex == -1)
        return;
    const auto document = put_document_in_slot(tables.newDocumentIndex);
    attempt([&] { tables.documentFileTitles[ActiveDocumentIndex() - 1].clear(); });
    document->control_pos();
    ++tables.openDocumentCount;
    attempt_each([&] { document->rtfText->set_SelFontSize(new_document_points); },
        [&] { document->rtfText.SetFocus(); });
}

/// The caption says whether there is a path, and the dialog keeps which.
void frmMain::mnuFileSave_Click()
{
    std::string caption;
    attempt([&] { caption = document(ActiveDocumentIndex()).Caption; });
    if (caption.empty() || caption.starts_with("Document")
        || caption == m_process.ConfigFolder + "/first.txt") {
        mnuFileSaveAs_Click();
        return;
    }
    attempt([&] { save_text(); });
    attempt([&] { m_process.tables.documentChanged[ActiveDocumentIndex()] = false; });
    if (m_process.tables.closingSave)
        --m_process.tables.openDocumentCount;
}

/// Writes the text of the active document to the dialog's path. @throws Failure if it can't be
/// written, and tells the user so before: the document counts as saved all the same, and the text
/// may be gone with its window next.
void frmMain::save_text()
{
    const std::string& path = dlgCommonDialog.FileName;
    try {
        m_process.platform.files.write(path,
            to_utf8(document(ActiveDocumentIndex()).rtfText->Text().view()), Durability::durable);
    } catch (const Failure& failure) {
        m_process.platform.message_boxes.show("The file " + path + " could not be written.",
            application_title, MessageButtons::ok, MessageIcon::none);
        throw;
    }
}

void frmMain::mnuFileSaveAs_Click()
{
    FileDialogRequest request;
    // Rich text is missing here until documents can be written as such.
    request.Filter = "Text files (*.txt)|*.txt|Ini Files (*.ini)|*.ini|"
                     "Registry Files (*.log)|*.log|Batch File (*.bat)|*.bat|All files (*.*)|*.*";
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
    if (m_process.tables.closingSave)
        --m_process.tables.openDocumentCount;
}

void frmMain::save_as()
{
    DocumentTables& tables = m_process.tables;
    save_text();
    const std::int16_t index = ActiveDocumentIndex();
    tables.documentChanged[index] = false;
    document(index).Caption = dlgCommonDialog.FileName;
    tables.documentFileTitles[index - 1] = dlgCommonDialog.FileTitle;
}

// The slot that is freed here is that of the start document, whichever was closed; the closed one
// frees its own. A start document that is still open can lose its table entry to the next one.
void frmMain::mnuFileClose_Click()
{
    attempt_each([&] { ActiveForm().Unload(); },
        [&] { m_process.tables.documentSlotUsed[startDocumentIndex - 1] = false; });
}

void frmMain::mnuFileExit_Click()
{
    Unload();
}

} // namespace tessavox
