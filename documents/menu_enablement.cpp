#include "documents/menu_enablement.h"

#include "documents/document_window.h"
#include "forms/main_controls.h"

namespace tessavox {

void setmenu(Process& process, MainControls& main)
{
    const bool open = process.tables.openDocumentCount >= 1;
    main.apply(with_document, open);
    if (!open)
        return;
    attempt_each(
        [&] { main.apply(while_idle, !ActiveForm(process.forms).speech.session.m_bSpeaking()); },
        [&] { main.apply(with_selection, ActiveForm(process.forms).rtfText->SelLength() > 0); },
        [&] { main.apply(with_clipboard_text, process.platform.clipboard.has_text()); });
}

} // namespace tessavox
