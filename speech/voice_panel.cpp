#include "speech/voice_panel.h"

#include "app/main_controls.h"
#include "documents/document_controls.h"
#include "persist/number_text.h"
#include "persist/settings_files.h"
#include "persist/string_table.h"
#include "platform/failure.h"
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

VoicePanel::VoicePanel(DocumentControls& controls, MainControls& main, DocumentVoice& voice,
    SpeechSession& session, SpeakFlags& flags, PCCFile& settings, const std::string& ConfigFolder)
    : m_controls(controls)
    , m_main(main)
    , Voice(voice)
    , m_session(session)
    , m_flags(flags)
    , m_settings(settings)
    , m_ConfigFolder(ConfigFolder)
{
    controls.VoiceCB.Click = [this] { VoiceCB_Click(); };
    controls.FormatCB.Click = [this] { FormatCB_Click(); };
    controls.AudioOutputCB.Click = [this] { AudioOutputCB_Click(); };
    controls.cpvSlider1.Scroll = [this] { cpvSlider1_Scroll(); };
    controls.cpvSlider2.Scroll = [this] { cpvSlider2_Scroll(); };
    controls.Check1.Click = [this] { Check1_Click(); };
    controls.ResetBtn.Click = [this] { ResetBtn_Click(); };
}

void VoicePanel::fill_VoiceCB()
{
    attempt([&] { add_descriptions(m_controls.VoiceCB, Voice->GetVoices("", "")); });
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
    attempt([&] { outputs = Voice->GetAudioOutputs("", ""); });
    if (outputs.Count() >= 1) {
        add_descriptions(m_controls.AudioOutputCB, outputs);
    } else {
        m_controls.AudioOutputCB.AddItem("No audio ouput object available");
        m_controls.AudioOutputCB.Enabled = false;
    }
    attempt([&] { m_controls.AudioOutputCB.ListIndex = 0; });
}

void VoicePanel::set_bars()
{
    attempt_each([&] { Voice->set_Volume(full_volume_percent); },
        [&] { m_controls.cpvSlider1.Value = Voice->Rate(); },
        [&] { m_controls.cpvSlider2.Value = Voice->Volume(); });
}

void VoicePanel::tick_default_flags()
{
    m_flags.restore_default();
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
        m_main.sbStatusBar.PanelText(2) = LoadResString(2101) + m_controls.VoiceCB.Text.get();
    });
}

void VoicePanel::show_speed()
{
    attempt([&] {
        m_main.sbStatusBar.PanelText(3)
            = LoadResString(2100) + std::to_string(m_controls.cpvSlider1.Value);
    });
}

void VoicePanel::set_Voice()
{
    Voice->set_Voice(Voice->GetVoices("", "").Item(m_controls.VoiceCB.ListIndex));
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
    attempt_each([&] { Voice->set_AllowAudioOutputFormatChangesOnNextSet(false); },
        [&] { Voice->AudioOutputStream()->set_FormatType(chosen_format()); },
        [&] { Voice->set_AudioOutputStream(Voice->AudioOutputStream()); });
}

void VoicePanel::AudioOutputCB_Click()
try {
    Voice->set_AudioOutput(Voice->GetAudioOutputs("", "").Item(m_controls.AudioOutputCB.ListIndex));
    FormatCB_Click(); // setting the output has reset the format
} catch (const Failure& failure) {
    ReportDebugText("Set audio output error: ", failure.what());
}

void VoicePanel::cpvSlider1_Scroll()
{
    attempt([&] { Voice->set_Rate(m_controls.cpvSlider1.Value); });
    show_speed();
}

void VoicePanel::cpvSlider2_Scroll()
{
    attempt([&] { Voice->set_Volume(m_controls.cpvSlider2.Value); });
}

void VoicePanel::Check1_Click()
{
    m_main.mnuTrayReadClipboard.Enabled = m_controls.Check1.Value != 1;
}

void VoicePanel::ResetBtn_Click()
{
    attempt([&] { m_controls.AudioOutputCB.ListIndex = 0; });
    attempt([&] { Voice->set_AudioOutput(std::nullopt); });
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
    if (m_session.m_bPaused())
        attempt([&] { Voice->Resume(); });
    m_session.UpdateSpeechControls(false, false);
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
        [&] { Voice->set_Rate(m_controls.cpvSlider1.Value); });
    show_speed();
    end_request();
}

void VoicePanel::end_request()
{
    m_settings.WriteToFile(command_flags_text(CommandFlag::none), m_ConfigFolder + control_file);
}

} // namespace tessavox
