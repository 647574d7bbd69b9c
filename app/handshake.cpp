#include "app/handshake.h"

#include "documents/document_window.h"
#include "forms/main_controls.h"
#include "persist/settings_files.h"
#include "platform/number_text.h"

namespace tessavox {

namespace {

constexpr std::int16_t read_clipboard_line = 2;
constexpr std::int16_t pause_line = 3;
constexpr std::int16_t stop_line = 4;
constexpr std::int16_t clipboard_to_wave_line = 5;
constexpr std::int16_t voice_changed_line = 2;
constexpr std::int16_t speed_changed_line = 3;

} // namespace

Handshake::Handshake(Process& process, MainControls& main, PCCFile& text_file)
    : m_process(process)
    , m_main(main)
    , m_text_file(text_file)
{
}

void Handshake::start()
{
    m_lay_there = m_process.platform.clipboard.GetText();
    lastClipboardText = m_lay_there.empty() ? TextSlice() : m_lay_there.and_a_blank();
    m_main.Timer1.Tick = [this] { Timer1_Timer(); };
    m_main.Timer2.Tick = [this] { Timer2_Timer(); };
    m_process.platform.changes.watch(
        m_process.ConfigFolder, [this] { m_main.Timer1.Resting = false; });
}

/// Whether the file has lines; otherwise they are those of the one read before. That one is missing
/// or is no text of ours is told once, not some hundred times a second.
bool Handshake::is_read(const char* file)
{
    const std::string path = m_process.ConfigFolder + file;
    if (m_text_file.can_read(path))
        m_unreadable.erase(file);
    else if (!m_unreadable.insert(file).second)
        return false;
    return !m_text_file.ReadFromFile(path).empty();
}

void Handshake::reset()
{
    m_text_file.WriteToFile(command_flags_text(CommandFlag::none),
        m_process.ConfigFolder + web_file, Durability::fleeting);
}

// Other ticks would find the same, but for what the user does in the windows, which can wait the
// moment of a rest. Without a document nobody can say that automatic reading is off, and the tick
// goes on: what is new on the clipboard is marked, although nothing reads it.
void Handshake::Timer1_Timer()
{
    m_main.Timer1.Resting = true; // until a notice comes, also one of what this tick does
    const bool commanded
        = is_read(web_file) && to_number(m_text_file.FileText(read_clipboard_line)) == 1;
    bool automatic = true;
    attempt([&] { automatic = ActiveForm(m_process.forms).Check1.Value == 1; });
    if (!automatic && !commanded)
        return;
    read_clipboard(commanded);
    reset();
}

// A text that was read ends in one blank more than any text that is copied, so that copying it
// again makes another text of it.
void Handshake::read_clipboard(bool commanded)
{
    Clipboard& clipboard = m_process.platform.clipboard;
    const TextSlice first = clipboard.GetText(commanded ? Patience::some : Patience::none);
    const TextSlice second = clipboard.GetText(Patience::none);
    // What lay there before the start is read only if somebody asks for it, or copies it again.
    const bool is_wanted = commanded || !second.is_same(m_lay_there);
    if (!first.empty() && is_wanted && is_new(second)) {
        m_lay_there = {};
        attempt_each([&] { ActiveForm(m_process.forms).speech.reading.ReadClipbdBtn_Click(); },
            [&] { clipboard.SetText(clipboard.GetText(Patience::none).and_a_blank()); });
        lastClipboardText = clipboard.GetText(Patience::none);
    }
    if (commanded)
        attempt([&] { clipboard.Clear(); });
}

/// Looks some hundred times a second, also at long texts, so each copy is compared once.
bool Handshake::is_new(const TextSlice& text)
{
    if (text.is_same(lastClipboardText))
        return false;
    if (text == lastClipboardText) {
        lastClipboardText = text;
        return false;
    }
    return true;
}

void Handshake::Timer2_Timer()
{
    serve_command_flags();
    serve_control_flags();
}

// At most one command a tick. It is taken before it is carried out, so it is gone even where it has
// no effect.
void Handshake::serve_command_flags()
{
    if (!is_read(web_file))
        return;
    const auto raised = [&](std::int16_t line) { return m_text_file.FileText(line) == "1"; };
    if (raised(pause_line)) {
        reset();
        SpeechSession& session = ActiveForm(m_process.forms).speech.session;
        if (session.m_bSpeaking() && !session.m_bPaused())
            session.PauseBtn_Click();
        else if (session.m_bSpeaking() && session.m_bPaused())
            session.ResumeBtn_Click();
    } else if (raised(stop_line)) {
        reset();
        if (ActiveForm(m_process.forms).speech.session.m_bSpeaking())
            ActiveForm(m_process.forms).speech.session.StopBtn_Click();
    } else if (raised(clipboard_to_wave_line)) {
        reset();
        if (!ActiveForm(m_process.forms).speech.session.m_bSpeaking())
            m_main.mnuCtlSaveClipboardTexttoWav.run();
    }
}

void Handshake::serve_control_flags()
{
    if (!is_read(control_file))
        return;
    if (m_text_file.FileText(voice_changed_line) == "1")
        ActiveForm(m_process.forms).speech.panel.Adjustspeaker();
    else if (m_text_file.FileText(speed_changed_line) == "1")
        ActiveForm(m_process.forms).speech.panel.Adjustspeed();
}

} // namespace tessavox
