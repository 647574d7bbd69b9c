#include "speech/wave_file.h"

#include "forms/document_controls.h"
#include "platform/failure.h"
#include "speech/debug_text.h"
#include "speech/document_speech.h"
#include "speech/page_text.h"

#include <algorithm>

namespace tessavox {

namespace {

FileDialogRequest wave_request(const Texts& texts, int title_id, const std::string& file_name)
{
    FileDialogRequest request;
    request.DialogTitle = texts.LoadResString(title_id);
    request.Filter = texts.LoadResString(2309);
    request.FilterIndex = 2;
    request.FileName = file_name;
    return request;
}

constexpr std::int32_t no_time_limit = -1;

} // namespace

void WaveFile::menuFileSaveToWave_Click()
{
    save([&] {
        DocumentControls& document = m_speech.windows.document;
        if (m_speech.place.view_status == 1)
            return selection_or_rest(document.rtfText.pane(), m_speech.place.position);
        return copied_page_text(document, m_speech.platform.clipboard);
    });
}

void WaveFile::DockSaveToWave_Click()
{
    save([&] { return m_speech.platform.clipboard.GetText(); });
}

void WaveFile::save(const std::function<TextSlice()>& text)
{
    if (m_speech.session.m_bSpeaking())
        return;
    try {
        m_speech.panel.set_Voice();
        m_speech.Voice->set_Rate(m_speech.windows.document.cpvSlider1.Value);
        m_file_name.clear();
        FileDialogRequest request = wave_request(m_speech.platform.texts, 2103, m_file_name);
        request.overwrite_prompt = true;
        const std::optional<std::string> chosen = m_speech.platform.dialogs.ShowSave(request);
        if (!chosen)
            return;
        m_file_name = *chosen;
        m_speech.platform.screen.set_MousePointer(MousePointer::hourglass);
        const auto stream = m_speech.platform.speech.create_file_stream();
        const bool complete = speak_into(stream, text);
        m_speech.panel.AudioOutputCB_Click();
        stream->Close();
        m_speech.platform.screen.set_MousePointer(MousePointer::normal);
        if (complete) {
            const Texts& texts = m_speech.platform.texts;
            m_speech.platform.message_boxes.show(texts.LoadResString(2104),
                texts.LoadResString(2307), MessageButtons::ok, MessageIcon::none);
        }
    } catch (const Failure& failure) {
        ReportDebugText("Save to Wave file Error:", failure.what());
    }
}

/// Returns whether the whole text is in the file.
bool WaveFile::speak_into(
    const std::shared_ptr<SpeechFileStream>& stream, const std::function<TextSlice()>& text)
{
    stream->set_FormatType(m_speech.panel.chosen_format());
    stream->Open(m_file_name, SSFMCreateForWrite, false);
    m_speech.Voice->set_AllowAudioOutputFormatChangesOnNextSet(false);
    m_speech.Voice->set_AudioOutputStream(stream);
    const TextSlice spoken = text();
    m_speech.Voice->Speak(spoken, m_speech.flags.m_lSpeakFlags());
    return wait_for(spoken.size());
}

/// Blocks until all of the text is spoken, or the user has enough.
bool WaveFile::wait_for(std::size_t length)
{
    DocumentVoice& Voice = m_speech.Voice;
    const bool complete = m_speech.platform.blocking_work.wait(
        m_speech.platform.texts.LoadResString(2304), [&] { return Voice->WaitUntilDone(0); },
        [&] {
            const auto units = static_cast<double>(std::max<std::size_t>(length, 1));
            return static_cast<double>(Voice->spoken_units()) / units;
        });
    if (!complete)
        Voice->Speak({}, SVSFPurgeBeforeSpeak);
    Voice->WaitUntilDone(no_time_limit);
    return complete;
}

void WaveFile::Play_Click()
{
    if (m_speech.session.m_bSpeaking())
        return;
    try {
        const std::optional<std::string> chosen = m_speech.platform.dialogs.ShowOpen(
            wave_request(m_speech.platform.texts, 2106, m_file_name));
        if (!chosen)
            throw Failure("no file was chosen");
        m_file_name = *chosen;
        m_speech.windows.document.chkSpFlagIsFilename.Value = 1;
        m_speech.Voice->Speak(to_utf16(m_file_name), m_speech.flags.m_lSpeakFlags());
        m_speech.windows.document.chkSpFlagIsFilename.Value = 0;
        m_speech.session.UpdateSpeechControls(true, m_speech.session.m_bPaused());
    } catch (const Failure& failure) {
        ReportDebugText("Speak Wave Error: ", failure.what());
        m_speech.session.UpdateSpeechControls(false, m_speech.session.m_bPaused());
    }
}

} // namespace tessavox
