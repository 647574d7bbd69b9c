// The decision whether this process becomes the application or hands a command to a running copy.
#pragma once

#include "app/main_window.h"
#include "app/openmsg.h"
#include "documents/process.h"
#include "persist/text_file.h"

namespace tessavox {

/// Loads and shows `main`, or shows `message`, or passes the command on and leaves nothing loaded.
void StartInstance(
    Process& process, PCCFile& text_file, frmMain& main, const std::shared_ptr<openmsg>& message);

} // namespace tessavox
