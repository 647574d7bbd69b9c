// How other programs drive this one: through small files that two timers look at, and through the
// clipboard.
#pragma once

#include "documents/process.h"
#include "persist/text_file.h"

#include <set>
#include <string>

namespace tessavox {

struct MainControls;

/// A second start of the program, or any other, raises a flag in web.txt or control.txt; the copy
/// that runs takes it and clears them all. Nothing is locked: a flag that is raised between a look
/// and the clearing is lost.
class Handshake {
public:
    Handshake(Process& process, MainControls& main, PCCFile& text_file);

    /// From now on the two timers of the main window look. What lies on the clipboard isn't read by
    /// itself.
    void start();

private:
    void Timer1_Timer();
    void Timer2_Timer();
    void read_clipboard(bool commanded);
    void serve_command_flags();
    void serve_control_flags();
    bool is_new(const TextSlice& text);
    bool is_read(const char* file);
    void reset();

    Process& m_process;
    MainControls& m_main;
    PCCFile& m_text_file;
    std::set<std::string> m_unreadable; // files about which a message has come
    /// The clipboard's text as read last, with the blank that marks it as read.
    TextSlice lastClipboardText;
    TextSlice m_lay_there; // at the start
};

} // namespace tessavox
