// Small files on the disk, read and written whole and safely.
#pragma once

#include "platform/file_store.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>

namespace tessavox {

/// Reading never waits: what is no regular file is refused before a byte is asked for. Writing goes
/// to a new file that then takes the old one's place in one step, so that nobody ever sees half a
/// file. A file with several names, of another owner, or in a folder that takes no new file is
/// written in place, where the room is reserved first and the old bytes are put back on failure.
/// Links are followed.
/// Notes that are looked at hundreds of times a second are read again only when they have changed.
class DiskFileStore : public FileStore {
public:
    std::string read(const std::string& path, std::size_t most_bytes = most_text_bytes) override;
    void write(const std::string& path, const std::string& bytes, Durability durability) override;
    WriteObstacle obstacle_to_writing(const std::string& path) override;
    ReadObstacle obstacle_to_opening(const std::string& path) override;

private:
    /// What a file held when it was read, and by which marks of the system it is known again.
    struct Known {
        std::array<std::int64_t, 7> marks{};
        std::string bytes;
    };
    bool holds(const std::string& path, const std::string& bytes);

    std::map<std::string, Known> m_known; // small files only
};

} // namespace tessavox
