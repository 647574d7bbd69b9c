#include "speech/reading.h"

#include "documents/document_controls.h"
#include "platform/failure.h"

namespace tessavox {

TextSlice selection_or_rest(RichTextPane& pane, std::int32_t& position)
{
    position = pane.SelStart();
    if (pane.SelLength() == 0)
        pane.set_SelLength(static_cast<std::int32_t>(pane.Text().size()) - pane.SelStart());
    return pane.SelText();
}

void Reading::SpeakBtn_Click()
{
    if (m_document.session.m_bSpeaking())
        return;
    try {
        m_document.place.isReadClipbd = 1;
        m_document.panel.set_Voice();
        m_document.Voice->set_Rate(m_document.controls.cpvSlider1.Value);
        m_document.Voice->set_Volume(m_document.controls.cpvSlider2.Value);
        m_document.place.position = m_document.controls.rtfText->SelStart();
        if (m_document.place.view_status == 1) {
            if (m_document.controls.rtfText->Text().empty())
                return;
            speak_pane();
        }
        if (m_document.session.m_bPaused())
            m_document.Voice->Resume();
        m_document.controls.chkSpFlagIsFilename.Value = 0;
        m_document.session.UpdateSpeechControls(true, false);
    } catch (const Failure& failure) {
        ReportDebugText("Speak Error: ", failure.what());
        m_document.session.UpdateSpeechControls(false, m_document.session.m_bPaused());
    }
}

void Reading::speak_pane()
{
    RichTextPane& pane = m_document.controls.rtfText.pane();
    const bool selected = !pane.SelText().empty();
    TextSlice text = selection_or_rest(pane, m_document.place.position);
    // With nothing but a last blank behind the caret the reading starts over from the top.
    if (!selected && (text.empty() || text.view() == u" ")) {
        m_document.place.position = 0;
        pane.set_SelStart(0);
        pane.set_SelLength(static_cast<std::int32_t>(pane.Text().size()));
        text = pane.SelText();
    }
    m_document.Voice->Speak(text, m_document.flags.m_lSpeakFlags());
}

void Reading::ReadClipbdBtn_Click()
{
    if (m_document.session.m_bSpeaking())
        return;
    begin_outside_text();
    m_document.place.position = m_document.controls.rtfText->SelStart();
    speak_outside_text([&] { return m_clipboard.GetText(); });
}

void Reading::readtext(const TextSlice& text)
{
    begin_outside_text();
    speak_outside_text([&] { return text; });
}

// The volume isn't set here: the voice keeps what its bar gave it last.
void Reading::begin_outside_text()
{
    m_document.place.isReadClipbd = 0;
    attempt_each([&] { m_document.panel.set_Voice(); },
        [&] { m_document.Voice->set_Rate(m_document.controls.cpvSlider1.Value); });
}

void Reading::speak_outside_text(const std::function<TextSlice()>& text)
{
    const SpeechSession& session = m_document.session;
    if (!(session.m_bPaused() && session.m_bSpeaking()))
        attempt([&] { m_document.Voice->Speak(text(), m_document.flags.m_lSpeakFlags()); });
    if (session.m_bPaused())
        attempt([&] { m_document.Voice->Resume(); });
    m_document.controls.chkSpFlagIsFilename.Value = 0;
    m_document.session.UpdateSpeechControls(true, false);
}

} // namespace tessavox
