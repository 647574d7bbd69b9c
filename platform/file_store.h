// Small files, read and written whole.
#pragma once

#include "platform/text_limits.h"

#include <string>

namespace tessavox {

/// Whether a file has to survive a loss of power right after it was written.
enum class Durability {
    durable, // on the disk when the call returns
    fleeting, // a note between running programs: as fast as can be, and it may be lost with the
              // power
};

/// What speaks against writing a file.
enum class WriteObstacle {
    none,
    no_folder, // the folder that it would lie in isn't there
    not_writable, // read-only, in a folder that takes nothing new, no regular file, or a bad name
};

/// What speaks against opening a file as a document.
enum class ReadObstacle {
    none,
    not_readable, // or not there
    no_file, // a folder, a pipe or a device
    too_long, // for a text pane
    no_rich_text, // though its name says so
};

class FileStore {
public:
    virtual ~FileStore() = default;
    /// The bytes of a regular file, `most_bytes` at most.
    /// @throws Failure if it is missing, unreadable, larger or no regular file. Never blocks on a
    /// pipe or a device.
    virtual std::string read(const std::string& path, std::size_t most_bytes = most_text_bytes) = 0;
    /// Replaces or creates the file. Its old content stays whole if anything fails. Nothing is
    /// written if a fleeting file holds these bytes already. @throws Failure if it can't be
    /// written.
    virtual void write(const std::string& path, const std::string& bytes, Durability durability)
        = 0;
    /// What is known of that before anybody tries. What nobody has the permission to write counts
    /// as read-only for the administrator too, who could write it all the same.
    virtual WriteObstacle obstacle_to_writing(const std::string& path) = 0;
    /// Goes by what the file is, and not by what it holds.
    virtual ReadObstacle obstacle_to_opening(const std::string& path) = 0;
};

} // namespace tessavox
