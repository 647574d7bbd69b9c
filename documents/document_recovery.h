// Keeps what a document has not saved where the user finds it again. Nobody is asked or told.
#pragma once

#include "platform/controls/form.h"
#include "platform/controls/timer.h"
#include "platform/recovery_copies.h"
#include "platform/rich_text_pane.h"

#include <memory>
#include <string>

namespace tessavox {

/// Knows by itself whether the text differs from its file: documentChanged forgets that whenever
/// its window becomes active, and after a save that failed. A key press costs a look at a flag, and
/// some seconds later the text is copied once, however much was typed.
class DocumentRecovery {
public:
    DocumentRecovery(Form& document, RichTextPane& pane, RecoveryCopies& copies);

    void text_changed();
    /// The text is now that of a file; an empty path if there is none with just this text. `loaded`
    /// comes after the change that the load itself makes.
    void loaded(const std::string& path);
    void saved(const std::string& path) { loaded(path); }
    void loss_accepted();
    /// Another text is going to take the place of this one, or the window goes: what isn't saved
    /// stays kept for good.
    void text_goes();
    void before_writing(const std::string& path) { m_copy->keep_foreign_file(path); }

private:
    void keep();

    Form& m_document;
    RichTextPane& m_pane;
    RecoveryCopies& m_copies;
    std::unique_ptr<RecoveryCopy> m_copy;
    Timer m_timer; // runs from a change on until its text is kept
    bool m_is_unsaved = false;
};

} // namespace tessavox
