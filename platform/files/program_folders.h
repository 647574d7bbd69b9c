// Where the program's files lie.
#pragma once

#include <string>

namespace tessavox {

/// The shipped data: `source_share` if the program runs from `build_folder`, where it was built,
/// otherwise what was installed beside it.
std::string find_app_folder(const std::string& program_folder, const std::string& build_folder,
    const std::string& source_share);

/// $XDG_CONFIG_HOME, or .config in the user's home.
std::string find_config_home();

/// Where copies of what wasn't saved lie: below $XDG_STATE_HOME, or .local/state in the user's
/// home.
std::string find_recovery_folder();

/// The folder of the settings, without a separator at its end.
std::string config_folder_in(const std::string& config_home);

/// If that folder doesn't exist, the files of `defaults` are put there, all or none of them; what
/// is missing from an existing one stays missing. Returns it.
std::string prepare_config_folder(const std::string& config_home, const std::string& defaults);

} // namespace tessavox
