// Small files on the disk, read and written whole and safely.
#pragma once

#include "platform/file_store.h"

namespace tessavox {

/// Reading never waits: what is no regular file is refused before a byte is asked for. Writing goes
/// to a new file that then takes the old one's place in one step, so that nobody ever sees half a
/// file. A file with several names, of another owner, or in a folder that takes no new file is
/// written in place, where the room is reserved first and the old bytes are put back on failure.
/// Links are followed.
class DiskFileStore : public FileStore {
public:
    std::string read(const std::string& path) override;
    void write(const std::string& path, const std::string& bytes, Durability durability) override;
    WriteObstacle obstacle_to_writing(const std::string& path) override;
};

} // namespace tessavox
