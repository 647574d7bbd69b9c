// A folder for one test, with files in it.
#pragma once

#include "platform/temporary_folder.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/resource.h>

namespace tessavox {

namespace fs = std::filesystem;

struct TestFolder : TemporaryFolder {
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

/// Lets no file grow beyond so many bytes, as a full disk would.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit now = m_before;
        now.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &now);
    }
    ~SizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

} // namespace tessavox
