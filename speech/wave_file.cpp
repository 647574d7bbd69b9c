#include "speech/wave_file.h"

#include "documents/document_controls.h"
#include "persist/string_table.h"
#include "platform/failure.h"

namespace tessavox {

namespace {

FileDialogRequest wave_request(int title_id, const std::string& file_name)
{
    FileDialogRequest request;
    request.DialogTitle = LoadResString(title_id);
    request.Filter = "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav";
    request.FilterIndex = 2;
    request.FileName = file_name;
    return request;
}

constexpr std::int32_t no_time_limit = -1;

} // namespace

void WaveFile::menuFileSaveToWave_Click()
{
    save([&] {
        return m_document.place.view_status == 1
            ? selection_or_rest(m_document.controls.rtfText.pane(), m_document.place.position)
            : m_platform.clipboard.GetText();
    });
}

void WaveFile::DockSaveToWave_Click()
{
    save([&] { return m_platform.clipboard.GetText(); });
}

void WaveFile::save(const std::function<TextSlice()>& text)
{
    if (m_document.session.m_bSpeaking())
        return;
    try {
        m_document.panel.set_Voice();
        m_document.Voice->set_Rate(m_document.controls.cpvSlider1.Value);
        m_file_name.clear();
        FileDialogRequest request = wave_request(2103, m_file_name);
        request.overwrite_prompt = true;
        const std::optional<std::string> chosen = m_platform.dialogs.ShowSave(request);
        if (!chosen)
            return;
        m_file_name = *chosen;
        m_platform.screen.set_MousePointer(MousePointer::hourglass);
        const auto stream = m_platform.speech.create_file_stream();
        speak_into(stream, text);
        m_document.panel.AudioOutputCB_Click();
        stream->Close();
        m_platform.screen.set_MousePointer(MousePointer::normal);
        m_platform.message_boxes.show(
            LoadResString(2104), "File Saved", MessageButtons::ok, MessageIcon::none);
    } catch (const Failure& failure) {
        ReportDebugText("Save to Wave file Error:", failure.what());
    }
}

void WaveFile::speak_into(
    const std::shared_ptr<SpeechFileStream>& stream, const std::function<TextSlice()>& text)
{
    stream->set_FormatType(m_document.panel.chosen_format());
    stream->Open(m_file_name, SSFMCreateForWrite, false);
    m_document.Voice->set_AllowAudioOutputFormatChangesOnNextSet(false);
    m_document.Voice->set_AudioOutputStream(stream);
    m_document.Voice->Speak(text(), m_document.flags.m_lSpeakFlags());
    m_document.Voice->WaitUntilDone(no_time_limit);
}

void WaveFile::Play_Click()
{
    if (m_document.session.m_bSpeaking())
        return;
    try {
        const std::optional<std::string> chosen
            = m_platform.dialogs.ShowOpen(wave_request(2106, m_file_name));
        if (!chosen)
            throw Failure("no file was chosen");
        m_file_name = *chosen;
        m_document.controls.chkSpFlagIsFilename.Value = 1;
        m_document.Voice->Speak(to_utf16(m_file_name), m_document.flags.m_lSpeakFlags());
        m_document.controls.chkSpFlagIsFilename.Value = 0;
        m_document.session.UpdateSpeechControls(true, m_document.session.m_bPaused());
    } catch (const Failure& failure) {
        ReportDebugText("Speak Wave Error: ", failure.what());
        m_document.session.UpdateSpeechControls(false, m_document.session.m_bPaused());
    }
}

} // namespace tessavox
