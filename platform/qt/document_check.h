// Whether a file can be opened as a document, before that is tried.
#pragma once

#include "platform/file_store.h"

#include <string>

namespace tessavox {

/// Looks into the file, too, as the pane will that is going to load it: its name tells whether as
/// rich text. What word processors read is left to them.
ReadObstacle obstacle_to_document(FileStore& files, const std::string& path);

} // namespace tessavox
