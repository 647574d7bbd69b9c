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

Reading::Reading(DocumentControls& controls, DocumentVoice& voice, SpeechSession& session,
    VoicePanel& panel, SpeakFlags& flags, ReadingPlace& place, Clipboard& clipboard)
    : m_controls(controls)
    , Voice(voice)
    , m_session(session)
    , m_panel(panel)
    , m_flags(flags)
    , m_place(place)
    , m_clipboard(clipboard)
{
}

void Reading::SpeakBtn_Click()
{
    if (m_session.m_bSpeaking())
        return;
    try {
        m_place.isReadClipbd = 1;
        m_panel.set_Voice();
        Voice->set_Rate(m_controls.cpvSlider1.Value);
        Voice->set_Volume(m_controls.cpvSlider2.Value);
        m_place.position = m_controls.rtfText->SelStart();
        if (m_place.view_status == 1) {
            if (m_controls.rtfText->Text().empty())
                return;
            speak_pane();
        }
        if (m_session.m_bPaused())
            Voice->Resume();
        m_controls.chkSpFlagIsFilename.Value = 0;
        m_session.UpdateSpeechControls(true, false);
    } catch (const Failure& failure) {
        ReportDebugText("Speak Error: ", failure.what());
        m_session.UpdateSpeechControls(false, m_session.m_bPaused());
    }
}

void Reading::speak_pane()
{
    RichTextPane& pane = m_controls.rtfText.pane();
    const bool selected = !pane.SelText().empty();
    TextSlice text = selection_or_rest(pane, m_place.position);
    // With nothing but a last blank behind the caret the reading starts over from the top.
    if (!selected && (text.empty() || text.view() == u" ")) {
        m_place.position = 0;
        pane.set_SelStart(0);
        pane.set_SelLength(static_cast<std::int32_t>(pane.Text().size()));
        text = pane.SelText();
    }
    Voice->Speak(text, m_flags.m_lSpeakFlags());
}

void Reading::ReadClipbdBtn_Click()
{
    if (m_session.m_bSpeaking())
        return;
    attempt([&] { m_place.position = m_controls.rtfText->SelStart(); });
    speak_outside_text([&] { return m_clipboard.GetText(); });
}

void Reading::readtext(const TextSlice& text)
{
    speak_outside_text([&] { return text; });
}

// The volume isn't set here: the voice keeps what its bar gave it last.
void Reading::speak_outside_text(const std::function<TextSlice()>& text)
{
    m_place.isReadClipbd = 0;
    attempt_each(
        [&] { m_panel.set_Voice(); }, [&] { Voice->set_Rate(m_controls.cpvSlider1.Value); });
    if (!(m_session.m_bPaused() && m_session.m_bSpeaking()))
        attempt([&] { Voice->Speak(text(), m_flags.m_lSpeakFlags()); });
    if (m_session.m_bPaused())
        attempt([&] { Voice->Resume(); });
    m_controls.chkSpFlagIsFilename.Value = 0;
    m_session.UpdateSpeechControls(true, false);
}

} // namespace tessavox
