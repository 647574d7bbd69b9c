// The decision whether this process becomes the application or hands a command to a running copy.
#pragma once

#include "app/main_window.h"
#include "app/openmsg.h"
#include "documents/process.h"
#include "persist/text_file.h"

namespace tessavox {

/// Raises the flag of a command, if the command line is one and a copy of the program runs that can
/// take it. Returns whether it did: this process has nothing else to do then. It costs no more than
/// a look at one file and the writing of another, so it comes before anything is set up; what is
/// wrong with the files is left to StartInstance to tell.
bool pass_command_on(
    FileStore& files, const std::string& ConfigFolder, const std::string& command_line);

/// Loads and shows `main`, or shows `message`, or passes the command on and leaves nothing loaded.
void StartInstance(
    Process& process, PCCFile& text_file, frmMain& main, const std::shared_ptr<openmsg>& message);

} // namespace tessavox
