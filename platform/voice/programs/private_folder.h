// The one place where an engine's program may write.
#pragma once

#include "platform/descriptor.h"

#include <filesystem>

namespace tessavox::voice {

/// An empty folder below XDG_RUNTIME_DIR, or below the temporary folder where there is none, that
/// only the user can enter. It goes with this object, and all that is in it. One whose process was
/// killed is removed by the next that makes a folder.
class PrivateFolder {
public:
    /// @throws Failure if it can't be made.
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
    Descriptor m_lock; // of the folder: tells others that its process lives
};

} // namespace tessavox::voice
