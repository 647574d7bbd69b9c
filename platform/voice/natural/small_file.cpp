#include "platform/voice/natural/small_file.h"

#include "platform/failure.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

class OpenFile {
public:
    // Without waiting: a pipe that nobody writes to would hold us for ever.
    explicit OpenFile(const std::filesystem::path& path)
        : m_file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {
        if (m_file < 0)
            throw Failure("can't be opened: " + std::generic_category().message(errno));
    }
    ~OpenFile() { ::close(m_file); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int number() const { return m_file; }

private:
    int m_file;
};

} // namespace

std::string read_small_file(const std::filesystem::path& path, std::size_t most_bytes)
{
    const OpenFile file(path);
    struct stat facts { };
    if (::fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode))
        throw Failure("is no plain file");
    std::string text(most_bytes + 1, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        const ssize_t got = ::read(file.number(), text.data() + length, text.size() - length);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw Failure("can't be read: " + std::generic_category().message(errno));
        if (got == 0)
            break;
        length += static_cast<std::size_t>(got);
    }
    if (length > most_bytes)
        throw Failure("is larger than " + std::to_string(most_bytes) + " bytes");
    text.resize(length);
    return text;
}

} // namespace tessavox::voice
