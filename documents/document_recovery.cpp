#include "documents/document_recovery.h"

#include "platform/failure.h"

namespace tessavox {

namespace {

constexpr int most_seconds_lost_ms = 3000;

} // namespace

DocumentRecovery::DocumentRecovery(Form& document, RichTextPane& pane, RecoveryCopies& copies)
    : m_document(document)
    , m_pane(pane)
    , m_copies(copies)
    , m_copy(copies.create())
    , m_timer(document, "RecoveryTimer", most_seconds_lost_ms)
{
    m_timer.Enabled = false;
    m_timer.Tick = [this] { keep(); };
}

void DocumentRecovery::text_changed()
{
    m_is_unsaved = true;
    if (!m_timer.Enabled)
        m_timer.Enabled = true;
}

void DocumentRecovery::keep()
{
    m_timer.Enabled = false;
    m_copy->keep(m_document.Caption, m_pane.Text());
}

void DocumentRecovery::loaded(const std::string& path)
{
    loss_accepted();
    m_copy->note_file(path);
}

void DocumentRecovery::loss_accepted()
{
    m_is_unsaved = false;
    m_timer.Enabled = false;
    m_copy->drop();
}

void DocumentRecovery::text_goes()
{
    if (!m_is_unsaved)
        return;
    keep();
    m_is_unsaved = false;
    m_copy = m_copies.create();
}

} // namespace tessavox
