// A program of somebody else's, within walls of its own.
#pragma once

#include "platform/descriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tessavox::voice {

/// What is started, and what it may reach.
///
/// Within the walls it runs programs, reads the system's folders and what `readable` names, and
/// writes below `folder` only. It has no network, no display, no session bus and no sound server,
/// and can't leave its process group. Its memory and the length of its files are bounded.
struct ProgramOrder {
    std::vector<std::string> arguments; // the first is the program's full path
    std::vector<std::string> readable; // files and folders
    std::filesystem::path folder; // its own; also its current and its temporary folder
};

/// Runs as long as this object lives, at most. It ends with the process that started it, and with
/// it ends, at once, all that it has started. That process must have one thread.
class ConfinedProgram {
public:
    /// @throws Failure if no process or pipe is to be had. A program that can't be run says so on
    /// its errors and ends with 127.
    explicit ConfinedProgram(const ProgramOrder& order);
    ~ConfinedProgram();
    ConfinedProgram(const ConfinedProgram&) = delete;
    ConfinedProgram& operator=(const ConfinedProgram&) = delete;

    /// Ours of its standard input, output and errors; none of them waits. -1 once closed.
    int input() const { return m_input.get(); }
    int output() const { return m_output.get(); }
    int errors() const { return m_errors.get(); }
    void close_input() { m_input = Descriptor(); }
    /// Readable once it has ended.
    int process() const { return m_process_descriptor.get(); }
    /// How it ended: "ended with 3", "was ended by signal 11". Nothing while it runs.
    std::optional<std::string> end() const;
    bool ended_well() const;

private:
    pid_t m_process = -1;
    Descriptor m_process_descriptor;
    Descriptor m_input;
    Descriptor m_output;
    Descriptor m_errors;
};

} // namespace tessavox::voice
