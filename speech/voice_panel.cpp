#include "speech/voice_panel.h"

#include "forms/document_controls.h"
#include "forms/main_controls.h"
#include "persist/settings_files.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "speech/debug_text.h"
#include "speech/document_speech.h"
#include "speech/formats.h"

namespace tessavox {

namespace {

constexpr int any_locale = 0;
constexpr const char* default_format = "48kHz 16Bit Stereo";
constexpr int full_volume_percent = 100;

void add_descriptions(ComboBox& list, const SpeechObjectTokens& tokens)
{
    for (const SpeechObjectToken& token : tokens)
        attempt([&] { list.AddItem(token.GetDescription(any_locale)); });
}

} // namespace

VoicePanel::VoicePanel(DocumentSpeech& speech, PCCFile& settings, const std::string& ConfigFolder)
    : m_speech(speech)
    , m_controls(speech.windows.document)
    , m_main(speech.windows.main)
    , m_settings(settings)
    , m_ConfigFolder(ConfigFolder)
{
    m_controls.VoiceCB.Click = [this] { VoiceCB_Click(); };
    m_controls.FormatCB.Click = [this] { FormatCB_Click(); };
    m_controls.AudioOutputCB.Click = [this] { AudioOutputCB_Click(); };
    m_controls.cpvSlider1.Scroll = [this] { cpvSlider1_Scroll(); };
    m_controls.cpvSlider2.Scroll = [this] { cpvSlider2_Scroll(); };
    m_controls.Check1.Click = [this] { Check1_Click(); };
}

void VoicePanel::fill_VoiceCB()
{
    attempt([&] { add_descriptions(m_controls.VoiceCB, m_speech.Voice->GetVoices("", "")); });
    attempt([&] { m_controls.VoiceCB.ListIndex = to_integer16(m_settings.FileText(voice_line)); });
}

void VoicePanel::fill_FormatCB()
{
    for (const FormatRow& row : formats)
        AddFormatEntry(row.text, row.type);
}

void VoicePanel::fill_AudioOutputCB()
{
    SpeechObjectTokens outputs;
    attempt([&] { outputs = m_speech.Voice->GetAudioOutputs("", ""); });
    if (outputs.Count() >= 1) {
        add_descriptions(m_controls.AudioOutputCB, outputs);
    } else {
        attempt(
            [&] { m_controls.AudioOutputCB.AddItem(m_speech.platform.texts.LoadResString(2306)); });
        m_controls.AudioOutputCB.Enabled = false;
    }
    attempt([&] { m_controls.AudioOutputCB.ListIndex = 0; });
}

void VoicePanel::set_bars()
{
    attempt_each([&] { m_speech.Voice->set_Volume(full_volume_percent); },
        [&] { m_controls.cpvSlider1.Value = m_speech.Voice->Rate(); },
        [&] { m_controls.cpvSlider2.Value = m_speech.Voice->Volume(); });
}

void VoicePanel::tick_default_flags()
{
    m_speech.flags.restore_default();
    m_controls.chkSpFlagAync.Value = 1;
    m_controls.chkSpFlagPurgeBeforeSpeak.Value = 1;
}

void VoicePanel::show_in_status_bar()
{
    show_speaker();
    show_speed();
}

void VoicePanel::show_speaker()
{
    attempt([&] {
        m_main.sbStatusBar.PanelText(2)
            = m_speech.platform.texts.LoadResString(2101) + m_controls.VoiceCB.Text.get();
    });
}

void VoicePanel::show_speed()
{
    attempt([&] {
        m_main.sbStatusBar.PanelText(3) = m_speech.platform.texts.LoadResString(2100)
            + std::to_string(m_controls.cpvSlider1.Value);
    });
}

void VoicePanel::show_output(bool reachable)
{
    if (reachable)
        show_speaker();
    else
        attempt(
            [&] { m_main.sbStatusBar.PanelText(2) = m_speech.platform.texts.LoadResString(2305); });
}

void VoicePanel::set_Voice()
{
    m_speech.Voice->set_Voice(m_speech.Voice->GetVoices("", "").Item(m_controls.VoiceCB.ListIndex));
}

int VoicePanel::chosen_format() const
{
    return m_controls.FormatCB.ItemData(m_controls.FormatCB.ListIndex);
}

void VoicePanel::AddFormatEntry(const std::string& text, int type)
{
    m_controls.FormatCB.set_ItemData(m_controls.FormatCB.AddItem(text), type);
}

void VoicePanel::VoiceCB_Click()
{
    attempt([&] { set_Voice(); });
    show_speaker();
}

void VoicePanel::FormatCB_Click()
{
    attempt_each([&] { m_speech.Voice->set_AllowAudioOutputFormatChangesOnNextSet(false); },
        [&] { m_speech.Voice->AudioOutputStream()->set_FormatType(chosen_format()); },
        [&] { m_speech.Voice->set_AudioOutputStream(m_speech.Voice->AudioOutputStream()); });
}

void VoicePanel::AudioOutputCB_Click()
try {
    m_speech.Voice->set_AudioOutput(
        m_speech.Voice->GetAudioOutputs("", "").Item(m_controls.AudioOutputCB.ListIndex));
    FormatCB_Click(); // setting the output has reset the format
} catch (const Failure& failure) {
    ReportDebugText("Set audio output error: ", failure.what());
}

void VoicePanel::cpvSlider1_Scroll()
{
    attempt([&] { m_speech.Voice->set_Rate(m_controls.cpvSlider1.Value); });
    show_speed();
}

void VoicePanel::cpvSlider2_Scroll()
{
    attempt([&] { m_speech.Voice->set_Volume(m_controls.cpvSlider2.Value); });
}

void VoicePanel::Check1_Click()
{
    m_main.mnuTrayReadClipboard.Enabled = m_controls.Check1.Value != 1;
}

void VoicePanel::ResetBtn_Click()
{
    attempt([&] { m_controls.AudioOutputCB.ListIndex = 0; });
    attempt([&] { m_speech.Voice->set_AudioOutput(std::nullopt); });
    m_controls.Check1.Value = 1;
    attempt([&] { m_controls.VoiceCB.ListIndex = 0; });
    m_controls.FormatCB.Text = default_format;
    m_controls.cpvSlider2.Value = full_volume_percent;
    cpvSlider2_Scroll();
    m_controls.cpvSlider1.Value = 0;
    cpvSlider1_Scroll();
    tick_default_flags();
    m_controls.chkSpFlagIsFilename.Value = 0;
    m_controls.chkSpFlagNLPSpeakPunc.Value = 0;
    m_controls.chkSpFlagPersistXML.Value = 0;
    m_controls.SkipTxtBox.Text = "0";
    if (m_speech.session.m_bPaused())
        attempt([&] { m_speech.Voice->Resume(); });
    m_speech.session.UpdateSpeechControls(false, false);
}

void VoicePanel::Adjustspeaker()
{
    m_settings.ReadFromFile(m_ConfigFolder + speech_settings_file);
    attempt_each(
        [&] { m_controls.VoiceCB.ListIndex = to_integer16(m_settings.FileText(voice_line)); },
        [&] { set_Voice(); });
    show_speaker();
    end_request();
}

void VoicePanel::Adjustspeed()
{
    m_settings.ReadFromFile(m_ConfigFolder + speech_settings_file);
    attempt_each(
        [&] { m_controls.cpvSlider1.Value = to_integer16(m_settings.FileText(speed_line)); },
        [&] { m_speech.Voice->set_Rate(m_controls.cpvSlider1.Value); });
    show_speed();
    end_request();
}

void VoicePanel::end_request()
{
    m_settings.WriteToFile(
        command_flags_text(CommandFlag::none), m_ConfigFolder + control_file, Durability::fleeting);
}

} // namespace tessavox
