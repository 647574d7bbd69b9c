// The Insert menu: speech tags.
#pragma once

#include "documents/process.h"
#include "documents/tag_dialogs.h"
#include "forms/main_controls.h"

#include <memory>

namespace tessavox {

class InsertCommands {
public:
    /// Adds its commands to the Insert menu.
    InsertCommands(Process& process, MainControls& main);

    void mnuInsertMaleReader_Click();
    void mnuInsertSpeed_Click();
    void mnuInsertSpell_Click();
    void menuInsertSlience_Click();
    /// Closes the dialogs for speed and silence; that for the voice stays until it is answered.
    void unload();

private:
    template <class Dialog> void open(std::shared_ptr<Dialog>& dialog);

    Process& m_process;
    MainControls& m_main;
    std::shared_ptr<SelectionVoice> m_voice;
    std::shared_ptr<Selectionfrm> m_speed;
    std::shared_ptr<Selectionfrm1> m_silence;
};

} // namespace tessavox
