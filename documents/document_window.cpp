#include "documents/document_window.h"

#include "documents/file_commands.h"
#include "documents/menu_enablement.h"
#include "forms/dock_controls.h"
#include "forms/layout.h"
#include "forms/localise_form.h"
#include "forms/main_controls.h"
#include "forms/skin.h"
#include "platform/controls/pick.h"
#include "platform/number_text.h"

namespace tessavox {

namespace {

constexpr Pick<DocumentControls> hidden_at_load[] = {
    pick<&DocumentControls::Command1>,
    pick<&DocumentControls::Command2>,
    pick<&DocumentControls::SkipBtn>,
    pick<&DocumentControls::SkipTxtBox>,
    pick<&DocumentControls::UpDown1>,
    pick<&DocumentControls::SkinLabel2>,
    pick<&DocumentControls::AudioOutputCB>,
};

} // namespace

frmDocument::frmDocument(
    Process& process, MainControls& main, DockControls& dock, FileCommands& files)
    : DocumentControls(
        process.forms, process.platform.panes.create(), process.platform.web_panes.create())
    , settingsFile(process.platform.files, process.platform.message_boxes, process.platform.texts)
    , speech({ *this, dock, main }, process.platform, settingsFile, process.ConfigFolder)
    , recovery(*this, rtfText.pane(), process.platform.recovery)
    , web(
          speech, settingsFile, process.ConfigFolder, [this] { control_pos(); },
          [this] { control_pos2(); })
    , m_process(process)
    , m_main(main)
    , m_dock(dock)
    , m_files(files)
{
    Command4.Click = [this] { Command4_Click(); };
    rtfText->Change = [this] { rtfText_Change(); };
    rtfText->SelChange = [this] { rtfText_SelChange(); };
    rtfText->MouseUp = [this](int button, int) { rtfText_MouseUp(button); };
}

frmDocument& ActiveForm(const Forms& forms)
{
    Form* const active = forms.active_child();
    if (!active)
        throw Failure("no document is active");
    return static_cast<frmDocument&>(*active); // only documents lie in the main window
}

int frmDocument::slot_number() const
{
    return leading_number(Tag.get());
}

bool frmDocument::has_default_caption() const
{
    return Caption.get().starts_with("Document");
}

void frmDocument::Form_Load()
{
    attempt([&] { speech.create_voice(); });
    m_process.find_ConfigFolder();
    settingsFile.ReadFromFile(m_process.ConfigFolder + speech_settings_file);
    load_speech();
    attempt_each([&] { rtfText->set_HideSelection(false); }, [&] { rtfText->set_SelStart(0); });
    speech.session.UpdateSpeechControls(false, false);
    attempt([&] { cpvSlider1.Value = to_integer16(settingsFile.FileText(speed_line)); });
    apply_skin(*this, m_process.platform.skin, m_process.AppFolder);
    speech.place.view_status = 1;
    for (const auto control : hidden_at_load)
        control(*this).Visible = false;
    speech.panel.show_in_status_bar();
    web.load_history();
    LocaliseForm(*this, m_process.platform.texts);
    load_font();
}

void frmDocument::load_speech()
{
    chkSpFlagIsXML.Value = 1;
    speech.panel.fill_VoiceCB();
    attempt([&] { Check1.Value = to_integer16(settingsFile.FileText(automatic_reading_line)); });
    web.load_last_address();
    speech.panel.fill_FormatCB();
    speech.panel.set_bars();
    FormatCB.Text = settingsFile.FileText(format_line);
    speech.panel.fill_AudioOutputCB();
    speech.panel.tick_default_flags();
}

void frmDocument::load_font()
{
    settingsFile.ReadFromFile(m_process.ConfigFolder + font_settings_file);
    attempt_each([&] { rtfText->set_FontName(settingsFile.FileText(font_name_line)); },
        [&] { rtfText->set_FontSize(to_integer16(settingsFile.FileText(font_size_line))); },
        [&] { rtfText->set_FontBold(to_boolean(settingsFile.FileText(font_bold_line))); });
}

// A window that loses and regains the active state forgets that its text was changed, so only a
// change since then is asked about when it closes.
void frmDocument::Form_Activate()
{
    UpdateLineNumberPanel();
    m_process.tables.closingSave = false;
    setmenu(m_process, m_main);
    speech.place.isReadClipbd = 1;
    if (!has_default_caption())
        m_files.dlgCommonDialog.FileName = Caption;
    attempt([&] { m_process.tables.documentChanged[slot_number()] = false; });
}

void frmDocument::Form_Resize()
{
    fit_text_pane(*this, m_main);
    if (speech.place.view_status == 2)
        control_pos2();
    else
        control_pos();
}

void frmDocument::control_pos()
{
    tessavox::control_pos(*this, m_main, [this] { UpdateLineNumberPanel(); });
}

void frmDocument::control_pos2()
{
    tessavox::control_pos2(*this, m_main);
}

void frmDocument::Form_Unload(bool& Cancel)
{
    save_settings();
    bool changed = false;
    attempt([&] { changed = m_process.tables.documentChanged[slot_number()]; });
    if (changed)
        offer_to_save(Cancel);
    else
        leave_tables();
    if (!Cancel)
        recovery.text_goes();
    // Also after Cancel: the window that stays has no voice any more.
    speech.session.StopBtn_Click();
    speech.Voice.release();
}

void frmDocument::save_settings()
{
    settingsFile.WriteToFile(speech_settings_text({ FormatCB.Text, VoiceCB.ListIndex,
                                 cpvSlider1.Value, Check1.Value, web.address_to_keep() }),
        m_process.ConfigFolder + speech_settings_file);
    settingsFile.WriteToFile(
        history_settings_text(web.history()), m_process.ConfigFolder + history_settings_file);
}

void frmDocument::offer_to_save(bool& Cancel)
{
    show_before_asking();
    Platform& platform = m_process.platform;
    MessageAnswer answer = MessageAnswer::cancel;
    attempt([&] {
        answer = platform.message_boxes.show(platform.texts.LoadResString(2102), application_title,
            MessageButtons::yes_no_cancel, MessageIcon::question);
    });
    switch (answer) {
    case MessageAnswer::cancel:
        Cancel = true;
        setmenu(m_process, m_main);
        break;
    case MessageAnswer::no:
        recovery.loss_accepted();
        leave_tables();
        break;
    default:
        save_before_close();
    }
}

// The main window closes documents that aren't active too. The user has to see which one is meant,
// and Save writes the text of the active one to the path that its activation has noted. An
// activation forgets that the text was changed, but the question is still open.
void frmDocument::show_before_asking()
{
    if (m_process.forms.active_child() == this)
        return;
    attempt([&] { m_process.forms.activate(*this); });
    attempt([&] { m_process.tables.documentChanged[slot_number()] = true; });
}

// The slot stays taken on this path; the save takes the document off the count.
void frmDocument::save_before_close()
{
    m_process.tables.closingSave = true;
    bool named = !has_default_caption();
    attempt(
        [&] { named = named || m_process.tables.documentFileTitles[slot_number() - 1].empty(); });
    if (named)
        m_files.mnuFileSave_Click();
    else
        m_files.mnuFileSaveAs_Click();
}

void frmDocument::leave_tables()
{
    DocumentTables& tables = m_process.tables;
    attempt_each([&] { tables.documentWindows[slot_number() - 1] = nullptr; },
        [&] { tables.documentSlotUsed[slot_number() - 1] = false; });
    --tables.openDocumentCount;
    setmenu(m_process, m_main);
}

void frmDocument::rtfText_Change()
{
    recovery.text_changed();
    DocumentTables& tables = m_process.tables;
    if (!tables.fileLoading)
        attempt([&] { tables.documentChanged[slot_number()] = true; });
    tables.fileLoading = false;
}

void frmDocument::rtfText_SelChange()
{
    UpdateLineNumberPanel();
    setmenu(m_process, m_main);
}

void frmDocument::rtfText_MouseUp(int button)
{
    constexpr int left_button = 1, right_button = 2;
    if (button == right_button)
        attempt([&] { m_main.window().PopupMenu(m_main.mnuPopUp); });
    else if (button == left_button)
        FormatCopyStep(m_process);
}

void frmDocument::Command4_Click()
{
    attempt_each([&] { m_dock.Show(); }, [&] { m_main.Hide(); });
}

// Of the active document, whichever one asks.
void frmDocument::UpdateLineNumberPanel()
{
    attempt([&] {
        RichTextPane& pane = ActiveForm(m_process.forms).rtfText.pane();
        const std::int32_t start = pane.SelStart();
        const std::int32_t line = start > 0 ? pane.GetLineFromChar(start) : 0;
        m_main.sbStatusBar.PanelText("Text")
            = m_process.platform.texts.LoadResString(2206) + std::to_string(line + 1);
    });
}

} // namespace tessavox
