// The settings panel of a document: voice, format, speed, volume, output.
#pragma once

#include "persist/text_file.h"

#include <string>

namespace tessavox {

class DocumentSpeech;
struct DocumentControls;
struct MainControls;

/// Fills the panel's controls and carries their values to the voice. The controls are the record:
/// a value set by code reaches the voice at the next reading only.
class VoicePanel {
public:
    /// `settings` is the document's reader of settings files, `ConfigFolder` where they lie.
    VoicePanel(DocumentSpeech& speech, PCCFile& settings, const std::string& ConfigFolder);

    // Steps of the document's load -------------------------------------------------------------
    void fill_VoiceCB();
    void fill_FormatCB();
    void fill_AudioOutputCB();
    /// Full volume; the bars take the voice's values.
    void set_bars();
    void tick_default_flags();
    void show_in_status_bar();
    /// Says in the status bar that the sound output is out of reach, or shows the speaker again.
    void show_output(bool reachable);

    // What other commands build on --------------------------------------------------------------
    /// Gives the voice the entry chosen in VoiceCB. @throws Failure if none is, or it has gone.
    void set_Voice();
    /// The SpeechAudioFormatType of the entry chosen in FormatCB. @throws Failure if none is.
    int chosen_format() const;

    void AddFormatEntry(const std::string& text, int type);
    void VoiceCB_Click();
    void FormatCB_Click();
    void AudioOutputCB_Click();
    void cpvSlider1_Scroll();
    void cpvSlider2_Scroll();
    void Check1_Click();
    void ResetBtn_Click();
    /// Takes voice or speed anew from setting1.txt and ends the request in control.txt.
    void Adjustspeaker();
    void Adjustspeed();

private:
    void show_speaker();
    void show_speed();
    void end_request();

    DocumentSpeech& m_speech;
    DocumentControls& m_controls;
    MainControls& m_main;
    PCCFile& m_settings;
    const std::string& m_ConfigFolder;
};

} // namespace tessavox
