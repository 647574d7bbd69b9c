#include "speech/reading.h"

#include "forms/document_controls.h"
#include "platform/failure.h"
#include "speech/debug_text.h"
#include "speech/document_speech.h"
#include "speech/page_text.h"

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
    if (m_speech.session.m_bSpeaking())
        return;
    try {
        m_speech.place.isReadClipbd = 1;
        m_speech.panel.set_Voice();
        m_speech.Voice->set_Rate(m_speech.windows.document.cpvSlider1.Value);
        m_speech.Voice->set_Volume(m_speech.windows.document.cpvSlider2.Value);
        m_speech.place.position = m_speech.windows.document.rtfText->SelStart();
        if (m_speech.place.view_status == 2)
            speak_page();
        if (m_speech.place.view_status == 1) {
            if (m_speech.windows.document.rtfText->Text().empty())
                return;
            speak_pane();
        }
        if (m_speech.session.m_bPaused())
            m_speech.Voice->Resume();
        m_speech.windows.document.chkSpFlagIsFilename.Value = 0;
        m_speech.session.UpdateSpeechControls(true, false);
    } catch (const Failure& failure) {
        ReportDebugText("Speak Error: ", failure.what());
        m_speech.session.UpdateSpeechControls(false, m_speech.session.m_bPaused());
    }
}

void Reading::speak_page()
{
    DocumentControls& document = m_speech.windows.document;
    Clipboard& clipboard = m_speech.platform.clipboard;
    if (!shows_document(document)) {
        m_speech.Voice->Speak(
            copied_page_text(document, clipboard), m_speech.flags.m_lSpeakFlags());
        return;
    }
    document.WebBrowser1.SetFocus();
    m_speech.Voice->Speak(clipboard.GetText(), m_speech.flags.m_lSpeakFlags());
}

void Reading::speak_pane()
{
    RichTextPane& pane = m_speech.windows.document.rtfText.pane();
    const bool selected = !pane.SelText().empty();
    TextSlice text = selection_or_rest(pane, m_speech.place.position);
    // With nothing but a last blank after the caret the reading starts over from the top.
    if (!selected && (text.empty() || text.view() == u" ")) {
        m_speech.place.position = 0;
        pane.set_SelStart(0);
        pane.set_SelLength(static_cast<std::int32_t>(pane.Text().size()));
        text = pane.SelText();
    }
    m_speech.Voice->Speak(text, m_speech.flags.m_lSpeakFlags());
}

void Reading::ReadClipbdBtn_Click()
{
    if (m_speech.session.m_bSpeaking())
        return;
    prepare_outside_text();
    m_speech.place.position = m_speech.windows.document.rtfText->SelStart();
    speak_outside_text([&] { return m_speech.platform.clipboard.GetText(); });
}

void Reading::readtext(const TextSlice& text)
{
    prepare_outside_text();
    speak_outside_text([&] { return text; });
}

// The volume isn't set here: the voice keeps what its bar gave it last.
void Reading::prepare_outside_text()
{
    m_speech.place.isReadClipbd = 0;
    attempt_each([&] { m_speech.panel.set_Voice(); },
        [&] { m_speech.Voice->set_Rate(m_speech.windows.document.cpvSlider1.Value); });
}

void Reading::speak_outside_text(const std::function<TextSlice()>& text)
{
    const SpeechSession& session = m_speech.session;
    if (!(session.m_bPaused() && session.m_bSpeaking()))
        attempt([&] { m_speech.Voice->Speak(text(), m_speech.flags.m_lSpeakFlags()); });
    if (session.m_bPaused())
        attempt([&] { m_speech.Voice->Resume(); });
    m_speech.windows.document.chkSpFlagIsFilename.Value = 0;
    m_speech.session.UpdateSpeechControls(true, false);
}

} // namespace tessavox
