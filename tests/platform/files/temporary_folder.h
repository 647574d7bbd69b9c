// A folder for one test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
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
    /// Writes a file, and makes the folders that it lies in.
    void write(const std::string& name, const std::string& bytes) const
    {
        fs::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << bytes;
    }
    std::string content(const std::string& name) const
    {
        std::ifstream file(m_path / name, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), {} };
    }
    std::size_t entries() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_path), fs::directory_iterator()));
    }

private:
    fs::path m_path;
};

} // namespace tessavox
