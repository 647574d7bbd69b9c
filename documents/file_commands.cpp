#include "documents/file_commands.h"

#include "documents/document_window.h"
#include "documents/menu_enablement.h"
#include "documents/printing.h"
#include "forms/command_table.h"
#include "platform/number_text.h"

namespace tessavox {

namespace {

constexpr double new_document_points = 12;
constexpr double half_an_inch = 720; // twips

using M = MainControls;
using F = FileCommands;

constexpr CommandRow<F> commands[] = {
    { &M::mnuFileNew, 1001, "Ctrl+N", call<&F::mnuFileNew_Click> },
    { &M::mnuFileOpen, 1002, "Ctrl+O", call<&F::mnuFileOpen_Click> },
    { &M::mnuFileBar0 },
    { &M::mnuFileSave, 1003, "Ctrl+S", call<&F::mnuFileSave_Click>, with_document },
    { &M::mnuFileSaveAs, 1004, "", call<&F::mnuFileSaveAs_Click>, with_document },
    { &M::mnuFileBar1 },
    { &M::mnuFilePrint, 1005, "Ctrl+P", call<&F::mnuFilePrint_Click>, with_document },
    { &M::mnuFileBar3 },
    { &M::mnuFileClose, 1006, "", call<&F::mnuFileClose_Click>, with_document },
    { &M::mnuFileExit, 1007, "Ctrl+Q", call<&F::mnuFileExit_Click> },
    { &M::mnuFileExit2 },
};

std::string title_of(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

/// Whether the path ends so; `end` is in small letters, and the path's may be of any kind.
bool ends_in(const std::string& path, std::string_view end)
{
    return lower_ascii(path).ends_with(end);
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

void FileCommands::mnuFileOpen_Click()
{
    std::int16_t index = 0;
    attempt([&] { index = ActiveDocumentIndex(); });
    dlgCommonDialog.FileName.clear();
    FileDialogRequest request;
    request.must_be_text = true;
    attempt([&] { request.Filter = m_process.platform.texts.LoadResString(2350); });
    if (const auto chosen = m_process.platform.dialogs.ShowOpen(request)) {
        dlgCommonDialog.FileName = *chosen;
        dlgCommonDialog.FileTitle = title_of(*chosen);
    }
    const std::string path = dlgCommonDialog.FileName; // an activation can change the dialog's
    if (path.empty())
        return;
    if (ends_in(path, ".pdf") || shows_page())
        return show_as_page(path);
    LoadDocumentFile(path);
    // After the load: a document counts as changed once it is open, and the next change of any
    // document doesn't count. The title goes to the document that was active before.
    m_process.tables.fileLoading = true;
    attempt_each([&] { m_process.tables.documentFileTitles[index - 1] = title_of(path); },
        [&] { active_document().control_pos(); });
    setmenu(m_process, m_main);
}

bool FileCommands::shows_page()
{
    bool is_page = false;
    attempt([&] { is_page = ActiveForm(m_process.forms).speech.place.view_status == 2; });
    return is_page;
}

void FileCommands::show_as_page(const std::string& path)
{
    attempt([&] {
        frmDocument& document = active_document();
        if (ends_in(path, ".pdf")) {
            document.speech.place.view_status = 2;
            document.control_pos2();
        }
        document.WebBrowser1->Navigate(path);
    });
}

void FileCommands::LoadDocumentFile(const std::string& path)
{
    if (ends_in(path, "doc")) {
        load_word_processor_document(path);
    } else if (ends_in(path, "rtf")) {
        mnuFileNew_Click();
        attempt([&] { load_file(ActiveForm(m_process.forms), path, TextKind::rich); });
    } else {
        mnuFileNew_Click();
        attempt([&] { load_file(active_document(), path, TextKind::plain); });
    }
    attempt([&] { active_document().Caption = path; });
}

void FileCommands::load_file(frmDocument& document, const std::string& path, TextKind kind)
{
    document.recovery.text_goes(); // with no slot free it can be an old document
    document.rtfText->LoadFile(path, kind);
    document.recovery.loaded(path);
}

// What the clipboard held is lost: documents have come over it since ever, and nobody should find
// there what was in one.
void FileCommands::load_word_processor_document(const std::string& path)
{
    Platform& platform = m_process.platform;
    std::u16string text;
    platform.screen.set_MousePointer(MousePointer::hourglass);
    attempt_each([&] { platform.clipboard.Clear(); },
        [&] { text = platform.word_processor.text_of(path); },
        [&] {
            frmDocument& document = ActiveForm(m_process.forms);
            document.recovery.text_goes();
            document.rtfText->set_Text(text);
            document.recovery.loaded({}); // the file itself holds more
        });
    platform.screen.set_MousePointer(MousePointer::normal);
    attempt([&] { platform.clipboard.Clear(); });
}

/// The caption says whether there is a path, and the dialog keeps which.
void FileCommands::mnuFileSave_Click()
{
    if (shows_page()) {
        attempt_each([&] { ActiveForm(m_process.forms).WebBrowser1.SetFocus(); },
            [&] { ActiveForm(m_process.forms).WebBrowser1->ExecWB(WebCommand::save); });
        return;
    }
    std::string caption;
    attempt([&] { caption = active_document().Caption; });
    if (caption.empty() || caption.starts_with("Document")
        || caption == m_process.ConfigFolder + "/first.txt") {
        mnuFileSaveAs_Click();
        return;
    }
    // A word processor's document gets rich text under its name, but not from Save As.
    const std::string& path = dlgCommonDialog.FileName;
    const bool is_rich = ends_in(path, "rtf") || ends_in(path, "doc");
    attempt([&] { save_text(is_rich ? TextKind::rich : TextKind::plain); });
    attempt([&] { m_process.tables.documentChanged[ActiveDocumentIndex()] = false; });
    leave_count_if_closing();
}

/// Writes the text of the active document to the dialog's path. @throws Failure if it can't be
/// written, and tells the user so before: the document counts as saved all the same, and the text
/// may be gone with its window next.
void FileCommands::save_text(TextKind kind)
{
    const std::string path = dlgCommonDialog.FileName;
    frmDocument& document = active_document();
    document.recovery.before_writing(path);
    try {
        document.rtfText->SaveFile(path, kind);
    } catch (const Failure&) {
        tell_that_not_written(path);
        throw;
    }
    document.recovery.saved(path);
}

void FileCommands::tell_that_not_written(const std::string& path)
{
    constexpr int reasons[] = { 2353, 2351, 2352 }; // by WriteObstacle
    Platform& platform = m_process.platform;
    const auto obstacle = static_cast<std::size_t>(platform.files.obstacle_to_writing(path));
    attempt([&] {
        // A cancelled Open dialog leaves no path.
        const std::string text = path.empty() ? platform.texts.LoadResString(2362)
                                              : platform.texts.with_value(2303, path) + "\n"
                + platform.texts.LoadResString(reasons[obstacle]);
        platform.message_boxes.show(text, application_title, MessageButtons::ok, MessageIcon::none);
    });
}

void FileCommands::mnuFileSaveAs_Click()
{
    FileDialogRequest request;
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
    save_text(ends_in(dlgCommonDialog.FileName, "rtf") ? TextKind::rich : TextKind::plain);
    const std::int16_t index = ActiveDocumentIndex();
    m_process.tables.documentChanged[index] = false;
    active_document().Caption = dlgCommonDialog.FileName;
    m_process.tables.documentFileTitles[index - 1] = dlgCommonDialog.FileTitle;
}

void FileCommands::mnuFilePrint_Click()
{
    Platform& platform = m_process.platform;
    if (!m_process.forms.active_child()) {
        platform.message_boxes.show(platform.texts.LoadResString(2342), application_title,
            MessageButtons::ok, MessageIcon::none);
        return;
    }
    frmDocument& document = ActiveForm(m_process.forms);
    if (document.speech.place.view_status != 1)
        document.WebBrowser1->ExecWB(WebCommand::print);
    else
        PrintRichText(document.rtfText.pane(), platform.printer, title_of(document.Caption),
            { half_an_inch, half_an_inch, half_an_inch, half_an_inch });
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
