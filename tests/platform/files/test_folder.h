// A folder for one test, with files in it.
#pragma once

#include "platform/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tessavox {

namespace fs = std::filesystem;

class TestFolder : public TemporaryFolder {
public:
    using TemporaryFolder::TemporaryFolder;

    /// Writes a file, and makes the folders that it lies in.
    void write(const std::string& name, const std::string& bytes) const
    {
        fs::create_directories((*this / name).parent_path());
        std::ofstream(*this / name, std::ios::binary) << bytes;
    }
    std::string content(const std::string& name) const
    {
        std::ifstream file(*this / name, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), {} };
    }
    std::size_t entries() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(path()), fs::directory_iterator()));
    }
};

} // namespace tessavox
