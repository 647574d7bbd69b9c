// The rich texts of several programs that lie beside the tests.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tessavox::rtf {

inline std::string contents_of(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

inline std::vector<std::filesystem::path> rich_text_files()
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(TESSAVOX_RTF_FILES)) {
        if (entry.path().extension() == ".rtf")
            paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace tessavox::rtf
