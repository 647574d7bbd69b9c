#include "platform/voice/natural/voice_folders.h"

namespace tessavox::voice {

namespace fs = std::filesystem;

VoiceFolders voice_folders(const std::string& data_home, const std::string& home)
{
    VoiceFolders folders;
    fs::path own = data_home;
    // A path that isn't absolute is to be ignored, as the XDG base directories say.
    if (!own.is_absolute())
        own = fs::path(home) / ".local" / "share";
    std::vector<fs::path> roots{ "/usr/local/share", "/usr/share" };
    if (own.is_absolute())
        roots.insert(roots.begin(), own);
    for (const fs::path& root : roots) {
        folders.descriptions.push_back(root / "tessavox" / "voices");
        folders.piper.push_back(root / "piper-voices");
    }
    folders.piper.emplace_back("/usr/share/piper/voices");
    return folders;
}

} // namespace tessavox::voice
