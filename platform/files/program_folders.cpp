#include "platform/files/program_folders.h"

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace tessavox {

namespace fs = std::filesystem;

std::string find_app_folder(const std::string& program_folder, const std::string& build_folder,
    const std::string& source_share)
{
    std::error_code ignored;
    if (fs::equivalent(program_folder, build_folder, ignored) && fs::is_directory(source_share))
        return source_share;
    return (fs::path(program_folder) / "../share/tessavox").lexically_normal().string();
}

namespace {

/// What the variable says, or the folder of this name in the user's home.
fs::path folder_of_user(const char* variable, const char* usual)
{
    if (const char* folder = std::getenv(variable); folder && folder[0] == '/')
        return folder;
    const char* home = std::getenv("HOME");
    return fs::path(home ? home : "/") / usual;
}

} // namespace

std::string find_config_home()
{
    return folder_of_user("XDG_CONFIG_HOME", ".config").string();
}

std::string find_recovery_folder()
{
    return (folder_of_user("XDG_STATE_HOME", ".local/state") / "tessavox/recovery").string();
}

std::string config_folder_in(const std::string& config_home)
{
    return (fs::path(config_home) / "tessavox/conf").string();
}

std::string prepare_config_folder(const std::string& config_home, const std::string& defaults)
{
    const fs::path folder = config_folder_in(config_home);
    const fs::path parent = folder.parent_path();
    std::error_code failed;
    if (fs::exists(fs::symlink_status(folder, failed)))
        return folder.string();
    // Filled under another name first, so that nobody meets half of it.
    const fs::path filling = parent / ("conf.new-" + std::to_string(::getpid()));
    fs::create_directories(parent, failed);
    fs::remove_all(filling, failed);
    if (fs::create_directory(filling, failed)) {
        for (const fs::directory_entry& file : fs::directory_iterator(defaults, failed)) {
            const fs::path copy = filling / file.path().filename();
            fs::copy_file(file.path(), copy, failed);
            fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add, failed);
        }
    }
    fs::rename(filling, folder, failed);
    if (failed)
        fs::remove_all(filling, failed);
    return folder.string();
}

} // namespace tessavox
