// A folder for what is needed for a short time only.
#pragma once

#include <filesystem>
#include <string>

namespace tessavox {

/// For its owner's eyes only; goes with all that was put there.
class TemporaryFolder {
public:
    /// @throws Failure if it can't be made in `place`.
    explicit TemporaryFolder(
        const std::filesystem::path& place = std::filesystem::temp_directory_path());
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

} // namespace tessavox
