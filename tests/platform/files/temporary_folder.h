// A folder for one test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace tessavox {

namespace fs = std::filesystem;

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = (fs::temp_directory_path() / "tessavox-test-XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    ~TemporaryFolder() { fs::remove_all(m_path); }
    fs::path operator/(const std::string& name) const { return m_path / name; }
    std::size_t entries() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_path), fs::directory_iterator()));
    }

private:
    fs::path m_path;
};

} // namespace tessavox
