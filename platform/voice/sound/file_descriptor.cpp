#include "platform/voice/sound/file_descriptor.h"

#include "platform/failure.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessavox::voice {

FileDescriptor::~FileDescriptor()
{
    if (m_number >= 0)
        ::close(m_number);
}

FileDescriptor open_regular_file(const std::string& path, int flags)
{
    constexpr mode_t everybody_as_the_mask_allows = 0666;
    struct stat status { };
    // Looked at before it is opened, as the very opening of a device may start something.
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw Failure(path + ": no regular file");
    FileDescriptor file(::open(
        path.c_str(), flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, everybody_as_the_mask_allows));
    if (file.get() < 0)
        throw Failure(path + ": " + std::generic_category().message(errno));
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        throw Failure(path + ": no regular file");
    return file;
}

} // namespace tessavox::voice
