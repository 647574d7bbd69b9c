#include "platform/files/write_target.h"

#include <climits>
#include <filesystem>
#include <unistd.h>

namespace tessavox {

namespace fs = std::filesystem;

namespace {

bool takes_writing(const fs::path& path)
{
    std::error_code failed;
    const fs::perms permissions = fs::status(path, failed).permissions();
    constexpr fs::perms anybody
        = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return !failed && (permissions & anybody) != fs::perms::none
        && ::access(path.c_str(), W_OK) == 0;
}

} // namespace

WriteObstacle obstacle_to_writing(const std::string& path)
{
    const fs::path file(path);
    std::error_code failed;
    if (!fs::is_directory(file.parent_path(), failed))
        return WriteObstacle::no_folder;
    const fs::file_status status = fs::status(file, failed);
    const bool is_possible = fs::is_regular_file(status) ? takes_writing(file)
                                                         : status.type() == fs::file_type::not_found
            && takes_writing(file.parent_path()) && file.filename().native().size() <= NAME_MAX;
    return is_possible ? WriteObstacle::none : WriteObstacle::not_writable;
}

} // namespace tessavox
