// The rich texts of several programs, which the fuzzer begins with too, and what each reads as:
// LibreOffice Writer 7.4, AbiWord 3.0.5 (from the same page), pandoc 2.17, latex2rtf 2.3.18,
// highlight 3.41, Pygments 2.20, GNU enscript 1.6.5; by hand in the manner of a small and a large
// one.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tessavox::rtf {

struct RichTextFile {
    std::string name;
    std::string bytes;
    std::string described;
};

inline std::vector<RichTextFile> rich_text_files()
{
    const auto contents_of = [](const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    std::vector<RichTextFile> files;
    for (const auto& entry : std::filesystem::directory_iterator(TESSAVOX_RTF_DESCRIPTIONS)) {
        const std::string name = entry.path().stem();
        const std::string start = "{\\rtf"; // which the fuzzer puts there itself
        files.push_back(
            { name, start + contents_of(TESSAVOX_RTF_CORPUS + name), contents_of(entry.path()) });
    }
    return files;
}

} // namespace tessavox::rtf
