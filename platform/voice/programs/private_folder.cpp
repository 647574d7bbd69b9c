#include "platform/voice/programs/private_folder.h"

#include "platform/failure.h"

#include <cstdlib>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view name_start = "tessavox-engine-";

fs::path place_of_folders()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    if (runtime && runtime[0] == '/' && fs::is_directory(runtime, error))
        return runtime;
    return fs::temp_directory_path(error);
}

// A folder of ours that nobody holds, which is then locked; nothing if it is held, is another
// user's or is none.
Descriptor locked_folder(const fs::path& path)
{
    Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat facts { };
    if (!folder.is_open() || fstat(folder.get(), &facts) != 0 || facts.st_uid != geteuid()
        || flock(folder.get(), LOCK_EX | LOCK_NB) != 0)
        return Descriptor();
    return folder;
}

void remove_what_others_left(const fs::path& place)
{
    std::error_code error;
    for (fs::directory_iterator entry(place, error); !error && entry != fs::end(entry);
         entry.increment(error)) {
        const fs::path path = entry->path();
        if (!path.filename().native().starts_with(name_start))
            continue;
        if (const Descriptor lock = locked_folder(path); lock.is_open()) {
            std::error_code ignored;
            fs::remove_all(path, ignored);
        }
    }
}

} // namespace

PrivateFolder::PrivateFolder()
{
    const fs::path place = place_of_folders();
    remove_what_others_left(place);
    // Another process may take a new folder for one that was left, until it is locked.
    constexpr int most_attempts = 10;
    for (int attempts = 0; attempts < most_attempts && !m_lock.is_open(); ++attempts) {
        std::string name = (place / name_start).native() + "XXXXXX";
        if (!mkdtemp(name.data()))
            break;
        m_path = name;
        m_lock = locked_folder(m_path);
        struct stat facts { };
        if (stat(name.c_str(), &facts) != 0)
            m_lock = Descriptor();
    }
    if (!m_lock.is_open())
        throw Failure("no private folder can be made in " + place.string());
}

PrivateFolder::~PrivateFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

} // namespace tessavox::voice
