// What all windows of one process share.
#pragma once

#include "documents/document_tables.h"
#include "documents/format_copy.h"
#include "platform/platform.h"

#include <string>

namespace tessavox {

struct Process {
    explicit Process(Platform& outside)
        : platform(outside)
        , forms(outside.windows, outside.post, outside.quit)
        , AppFolder(outside.app_folder)
    {
    }

    /// Sets the folder of the settings; the same one at every call.
    void find_ConfigFolder() { ConfigFolder = platform.config_folder + "/"; }

    Platform& platform;
    Forms forms;
    DocumentTables tables;
    FormatCopy format_copy;
    /// Ends in a separator, and file names begin with one: the doubled one is kept.
    std::string ConfigFolder;
    /// The shipped data; ends without a separator.
    std::string AppFolder;
};

} // namespace tessavox
