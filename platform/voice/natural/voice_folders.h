// Where natural voices lie.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tessavox::voice {

/// Of two voices of one name the earlier folder's counts, so the user's own come first.
struct VoiceFolders {
    std::vector<std::filesystem::path> descriptions; // of *.voice files
    std::vector<std::filesystem::path> piper; // of models, each in a folder of its own or not
};

/// The folders by the XDG base directories: `data_home` is $XDG_DATA_HOME, `home` is $HOME; either
/// may be empty. They need not exist.
VoiceFolders voice_folders(const std::string& data_home, const std::string& home);

} // namespace tessavox::voice
