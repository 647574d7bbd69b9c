#include "documents/edit_commands.h"

#include "documents/document_window.h"
#include "documents/find_dialog.h"
#include "forms/command_table.h"

namespace tessavox {

namespace {

using M = MainControls;
using E = EditCommands;

constexpr CommandRow<E> commands[] = {
    { &M::mnuEditCut, 1202, "Ctrl+X", call<&E::mnuEditCut_Click>, with_selection },
    { &M::mnuEditCopy, 1203, "Ctrl+C", call<&E::mnuEditCopy_Click>, with_selection },
    { &M::mnuEditPaste, 1204, "Ctrl+V", call<&E::mnuEditPaste_Click>, with_clipboard_text },
    { &M::mnuEditSelectAll, 1205, "Ctrl+A", call<&E::mnuEditSelectAll_Click> },
    { &M::mnuEditBar2 },
    { &M::mnuEditFind, 1206, "Ctrl+F", call<&E::mnuEditFind_Click> },
};

} // namespace

EditCommands::EditCommands(Process& process, MainControls& main)
    : m_process(process)
    , m_main(main)
{
    add_commands<E>(main, main.mnuEdit, commands, [this]() -> E& { return *this; });
}

EditCommands::~EditCommands() = default;

void EditCommands::mnuEditCut_Click()
{
    RichTextPane& pane = ActiveForm(m_process.forms).rtfText.pane();
    attempt_each([&] { m_process.platform.clipboard.SetText(pane.SelText()); },
        [&] { pane.set_SelText({}); });
}

void EditCommands::mnuEditCopy_Click()
{
    RichTextPane& pane = ActiveForm(m_process.forms).rtfText.pane();
    m_process.platform.clipboard.SetText(pane.SelText());
}

void EditCommands::mnuEditPaste_Click()
{
    const TextSlice copied = m_process.platform.clipboard.GetText();
    ActiveForm(m_process.forms).rtfText->set_SelRTF(std::u16string(copied.view()));
}

void EditCommands::mnuEditSelectAll_Click()
{
    RichTextPane& pane = ActiveForm(m_process.forms).rtfText.pane();
    pane.set_SelStart(0);
    pane.set_SelLength(static_cast<std::int32_t>(pane.Text().size()));
}

void EditCommands::mnuEditFind_Click()
{
    if (!m_find || !m_find->is_loaded())
        m_find = std::make_shared<frmFind>(m_process);
    m_find->Show(m_main);
}

void EditCommands::unload()
{
    if (m_find)
        m_find->Unload();
}

} // namespace tessavox
