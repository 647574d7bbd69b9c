#include "platform/voice/natural/small_file.h"

#include "platform/descriptor.h"
#include "platform/failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessavox::voice {

std::string read_small_file(const std::filesystem::path& path, std::size_t most_bytes)
{
    // Without waiting: a pipe that nobody writes to would hold us for ever.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.is_open())
        throw Failure("can't be opened: " + std::generic_category().message(errno));
    struct stat facts { };
    if (::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode))
        throw Failure("is no plain file");
    std::string text;
    std::array<char, 65'536> piece{};
    for (ssize_t got = 1; got != 0;) {
        got = ::read(file.get(), piece.data(), piece.size());
        if (got < 0 && errno != EINTR)
            throw Failure("can't be read: " + std::generic_category().message(errno));
        text.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (text.size() > most_bytes)
            throw Failure("is larger than " + std::to_string(most_bytes) + " bytes");
    }
    return text;
}

} // namespace tessavox::voice
