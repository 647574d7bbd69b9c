// A document: its window, its text, its voice and its own settings panel.
#pragma once

#include "app/process.h"
#include "desktop/dock_bar.h"
#include "documents/document_controls.h"
#include "persist/settings_files.h"
#include "persist/text_file.h"
#include "speech/reading.h"
#include "speech/speak_flags.h"
#include "speech/speech_session.h"
#include "speech/voice_events.h"
#include "speech/voice_panel.h"
#include "speech/wave_file.h"

namespace tessavox {

class frmMain;

/// There is no document apart from its window. Its Tag is its slot number, its Caption "Document "
/// and that number until it has a file, and then the file's path.
class frmDocument : public DocumentControls {
public:
    frmDocument(Process& process, frmMain& main, frmDockDemo& dock);
    ~frmDocument() override;

    bool m_bSpeaking() const { return m_session.m_bSpeaking(); }
    bool m_bPaused() const { return m_session.m_bPaused(); }
    ReadingPlace place;
    DocumentVoice Voice;

    void SpeakBtn_Click() { m_reading.SpeakBtn_Click(); }
    void ReadClipbdBtn_Click() { m_reading.ReadClipbdBtn_Click(); }
    void readtext(const TextSlice& text) { m_reading.readtext(text); }
    void PauseBtn_Click() { m_session.PauseBtn_Click(); }
    void ResumeBtn_Click() { m_session.ResumeBtn_Click(); }
    void StopBtn_Click() { m_session.StopBtn_Click(); }
    void SkipBtn_Click() { m_session.SkipBtn_Click(); }
    void menuFileSaveToWave_Click() { m_wave_file.menuFileSaveToWave_Click(); }
    void SpeaktofileBtn_Click() { menuFileSaveToWave_Click(); }
    void DockSaveToWave_Click() { m_wave_file.DockSaveToWave_Click(); }
    void ReadClipboardtoFile_Click() { DockSaveToWave_Click(); }
    void Play_Click() { m_wave_file.Play_Click(); }
    void ResetBtn_Click() { m_panel.ResetBtn_Click(); }
    void Check1_Click() { m_panel.Check1_Click(); }
    void Adjustspeaker() { m_panel.Adjustspeaker(); }
    void Adjustspeed() { m_panel.Adjustspeed(); }
    /// Lays the window out for its text, or for its web page, which the caller says in view_status.
    void control_pos();
    void control_pos2();

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Resize() override;
    void Form_Unload(bool& Cancel) override;

private:
    int slot_number() const;
    bool has_default_caption() const;
    void load_speech();
    void load_address_history();
    void load_font();
    void save_settings();
    void offer_to_save(bool& Cancel);
    void save_before_close();
    void leave_tables();
    void rtfText_Change();
    void rtfText_SelChange();
    void TabStrip1_Click();
    void UpdateLineNumberPanel();

    Process& m_process;
    frmMain& m_main;
    PCCFile settingsFile;
    UrlHistory m_sUrlHistory;
    std::string m_sLastUrl; // the web address as the settings had it at the load
    SpeechSession m_session;
    SpeakFlags m_flags;
    VoicePanel m_panel;
    ReadingParts m_reading_parts{ *this, Voice, m_session, m_panel, m_flags, place };
    Reading m_reading;
    VoiceEvents m_voice_events;
    WaveFile m_wave_file;
};

} // namespace tessavox
