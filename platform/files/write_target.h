// Whether a file can be written, before anybody tries.
#pragma once

#include <string>

namespace tessavox {

enum class WriteObstacle {
    none,
    no_folder, // the folder that it would lie in isn't there
    not_writable, // read-only, in a folder that takes nothing new, no regular file, or a bad name
};

/// What speaks against writing the file of this path, whether it exists or not. What nobody has the
/// permission to write counts as read-only for the administrator too.
WriteObstacle obstacle_to_writing(const std::string& path);

} // namespace tessavox
