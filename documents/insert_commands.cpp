#include "documents/insert_commands.h"

#include "documents/document_window.h"
#include "documents/speech_tags.h"
#include "forms/command_table.h"

namespace tessavox {

namespace {

using M = MainControls;
using I = InsertCommands;

constexpr CommandRow<I> commands[] = {
    { &M::mnuInsertMaleReader, 1502, "", call<&I::mnuInsertMaleReader_Click> },
    { &M::mnuInsertSpeed, 1503, "", call<&I::mnuInsertSpeed_Click> },
    { &M::mnuInsertSpell, 1504, "", call<&I::mnuInsertSpell_Click> },
    { &M::menuInsertSep },
    { &M::menuInsertSlience, 1505, "", call<&I::menuInsertSlience_Click> },
};

} // namespace

InsertCommands::InsertCommands(Process& process, MainControls& main)
    : m_process(process)
    , m_main(main)
{
    add_commands<I>(main, main.mnuInsert, commands, [this]() -> I& { return *this; });
}

template <class Dialog> void InsertCommands::open(std::shared_ptr<Dialog>& dialog)
{
    if (!dialog || !dialog->is_loaded())
        dialog = std::make_shared<Dialog>(m_process, m_main);
    dialog->Show();
}

void InsertCommands::mnuInsertMaleReader_Click()
{
    open(m_voice);
}

void InsertCommands::mnuInsertSpeed_Click()
{
    open(m_speed);
}

void InsertCommands::mnuInsertSpell_Click()
{
    insert_spell_tags(ActiveForm(m_process.forms).rtfText.pane());
}

void InsertCommands::menuInsertSlience_Click()
{
    open(m_silence);
}

void InsertCommands::unload()
{
    if (m_speed)
        m_speed->Unload();
    if (m_silence)
        m_silence->Unload();
}

} // namespace tessavox
