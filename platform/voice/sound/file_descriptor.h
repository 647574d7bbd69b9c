// An open file that closes itself.
#pragma once

#include <string>
#include <utility>

namespace tessavox::voice {

class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor();

    int get() const { return m_number; }
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};

/// Opens a regular file, or creates one if `flags` say so; symbolic links are followed. Neither
/// hangs on a pipe nor wakes a device. @throws Failure if it can't be opened or is something else.
FileDescriptor open_regular_file(const std::string& path, int flags);

} // namespace tessavox::voice
