// The whole program on a fake platform.
#pragma once

#include "app/tessavox.h"
#include "documents/document_window.h"
#include "tests/fakes/fake_platform.h"

#include <string>

namespace tessavox {

/// Settings files as a user's folder holds them: each data line in its place.
inline std::string file_of_lines(std::initializer_list<const char*> lines)
{
    std::string bytes = "\"\r\n";
    for (const char* line : lines)
        bytes += std::string(line) + "\r\n";
    return bytes + "\"\r\n";
}

struct RunningProgram : FakePlatform {
    RunningProgram()
    {
        files.files = {
            { "/home/conf//opened.txt", file_of_lines({ "0" }) },
            { "/home/conf//setting1.txt",
                file_of_lines({ "48kHz 16Bit Stereo", " 0", " 0", " 1", "http://a.example/" }) },
            { "/home/conf//setting2.txt", file_of_lines({ "Comic Sans MS", " 12", "False" }) },
            { "/home/conf//setting3.txt", file_of_lines({}) },
            { "/app/first.txt", "Hello world." },
        };
    }
    /// Runs Main and forgets what the start has asked of the voices and shown.
    void start(const std::string& command_line = {})
    {
        platform.command_line = command_line;
        program.Main();
        for (const auto& record : speech.records)
            record->take_calls();
    }
    frmMain& main_window() { return program.main_window(); }
    frmDocument& active() { return main_window().ActiveForm(); }
    FakePane& pane() { return static_cast<FakePane&>(active().rtfText.pane()); }
    std::string file(const std::string& name) { return files.files["/home/conf/" + name]; }
    std::string panel(int number) { return main_window().sbStatusBar.PanelText(number); }

    Tessavox program{ platform };
};

} // namespace tessavox
