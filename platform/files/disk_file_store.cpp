#include "platform/files/disk_file_store.h"

#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/text_limits.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tessavox {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largest_note_bytes = 1024;
constexpr std::size_t most_notes = 16;

[[noreturn]] void fail(const std::string& path, const char* what)
{
    throw Failure(path + " can't be " + what + ": " + std::strerror(errno));
}

[[noreturn]] void refuse(const std::string& path, const char* why)
{
    throw Failure(path + " " + why);
}

Descriptor open_file(const std::string& path, int flags, mode_t mode = 0)
{
    return Descriptor(::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, mode));
}

struct stat status_of(int file, const std::string& path)
{
    struct stat status { };
    if (::fstat(file, &status) != 0)
        fail(path, "examined");
    if (!S_ISREG(status.st_mode))
        refuse(path, "is no regular file");
    return status;
}

bool write_at(int file, const std::string& bytes, off_t offset)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const auto written = ::pwrite(
            file, bytes.data() + done, bytes.size() - done, offset + static_cast<off_t>(done));
        if (written < 0 && errno != EINTR)
            return false;
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return true;
}

std::string contents_of(int file, const std::string& path, std::size_t most_bytes)
{
    const struct stat status = status_of(file, path);
    if (static_cast<std::uintmax_t>(status.st_size) > most_bytes)
        refuse(path, "is too large");
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(status.st_size));
    std::array<char, 65536> piece;
    for (;;) {
        const auto count = ::read(file, piece.data(), piece.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            fail(path, "read");
        if (count == 0)
            return bytes;
        bytes.append(piece.data(), static_cast<std::size_t>(count));
        if (bytes.size() > most_bytes)
            refuse(path, "is too large");
    }
}

/// The file that a path means once all links are followed; the last one may lead to a file that
/// doesn't exist yet.
std::string followed(std::string path)
{
    constexpr int most_links = 40; // as many as the system itself follows
    for (int i = 0; i < most_links; ++i) {
        std::array<char, PATH_MAX> target;
        const auto size = ::readlink(path.c_str(), target.data(), target.size());
        if (size < 0)
            return path;
        std::string next(target.data(), static_cast<std::size_t>(size));
        if (next.empty() || next.front() != '/')
            next.insert(0, path.substr(0, path.rfind('/') + 1));
        path = std::move(next);
    }
    refuse(path, "is a ring of links");
}

/// A new file beside the wanted one; it goes away again unless it takes that one's place.
class NewFile {
public:
    NewFile(const std::string& path, mode_t mode)
        : m_name(path + ".new-" + std::to_string(::getpid()))
    {
        ::unlink(m_name.c_str()); // left by a process that ended badly and had our number
        m_file = open_file(m_name, O_WRONLY | O_CREAT | O_EXCL, mode);
    }
    ~NewFile()
    {
        if (m_file.is_open() || m_is_complete)
            ::unlink(m_name.c_str());
    }

    bool is_open() const { return m_file.is_open(); }
    int file() const { return m_file.get(); }
    /// A durable file's bytes are brought to the disk itself, so that no sudden end of the system
    /// loses both files.
    bool complete(const std::string& bytes, Durability durability)
    {
        m_is_complete = write_at(m_file.get(), bytes, 0)
            && (durability == Durability::fleeting || ::fdatasync(m_file.get()) == 0)
            && m_file.close();
        return m_is_complete;
    }
    bool take_place_of(const std::string& path)
    {
        const bool taken = ::rename(m_name.c_str(), path.c_str()) == 0;
        if (taken)
            m_is_complete = false;
        return taken;
    }

private:
    std::string m_name;
    Descriptor m_file;
    bool m_is_complete = false;
};

/// Whether the system reserved room for so many bytes, so that writing them can't fail for lack of
/// it. The file may have grown afterwards, also on failure.
bool reserve(int file, std::size_t size)
{
    if (size == 0)
        return true;
    errno = ::posix_fallocate(file, 0, static_cast<off_t>(size));
    return errno == 0;
}

/// Overwrites a file that has to keep its identity. While that goes on a copy of the old bytes lies
/// beside it, if the folder takes one.
void write_in_place(const std::string& path, const std::string& bytes)
{
    const Descriptor file = open_file(path, O_RDWR);
    if (!file.is_open())
        fail(path, "written");
    const std::string before = contents_of(file.get(), path, most_text_bytes);
    NewFile copy(path, 0600);
    if (copy.is_open() && !copy.complete(before, Durability::durable))
        fail(path, "copied before it is written");

    const auto old_size = static_cast<off_t>(before.size());
    if (!reserve(file.get(), bytes.size())) {
        const int reason = errno;
        if (::ftruncate(file.get(), old_size) == 0)
            errno = reason;
        fail(path, "written");
    }
    const bool written = write_at(file.get(), bytes, 0)
        && ::ftruncate(file.get(), static_cast<off_t>(bytes.size())) == 0
        && ::fdatasync(file.get()) == 0;
    if (written)
        return;
    const int reason = errno;
    const bool restored = write_at(file.get(), before, 0) && ::ftruncate(file.get(), old_size) == 0;
    errno = restored ? reason : errno;
    fail(path, restored ? "written" : "restored");
}

bool must_keep_its_identity(const struct stat& status)
{
    return status.st_nlink > 1 || status.st_uid != ::geteuid();
}

bool takes_writing(const fs::path& path)
{
    std::error_code failed;
    const fs::perms permissions = fs::status(path, failed).permissions();
    constexpr fs::perms anybody
        = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return !failed && (permissions & anybody) != fs::perms::none
        && ::access(path.c_str(), W_OK) == 0;
}

std::array<std::int64_t, 7> marks_of(const struct stat& status)
{
    return { static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino),
        status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec, status.st_ctim.tv_sec,
        status.st_ctim.tv_nsec };
}

/// The system's clock for files moves in steps of some milliseconds, so a file that has changed
/// just now may change once more under the same marks.
bool is_settled(const struct stat& status)
{
    constexpr double settled_after_seconds = 0.1;
    struct timespec now { };
    ::clock_gettime(CLOCK_REALTIME, &now);
    const auto age = [&](const struct timespec& then) {
        return static_cast<double>(now.tv_sec - then.tv_sec)
            + static_cast<double>(now.tv_nsec - then.tv_nsec) * 1e-9;
    };
    return age(status.st_mtim) > settled_after_seconds
        && age(status.st_ctim) > settled_after_seconds;
}

} // namespace

std::string DiskFileStore::read(const std::string& path, std::size_t most_bytes)
{
    struct stat status { };
    const bool exists = ::stat(path.c_str(), &status) == 0;
    if (const auto known = m_known.find(path);
        exists && known != m_known.end() && known->second.marks == marks_of(status))
        return known->second.bytes;
    m_known.erase(path);
    const Descriptor file = open_file(path, O_RDONLY);
    if (!file.is_open())
        fail(path, "opened");
    std::string bytes = contents_of(file.get(), path, most_bytes);
    if (exists && bytes.size() <= largest_note_bytes && m_known.size() < most_notes
        && is_settled(status))
        m_known[path] = { marks_of(status), bytes };
    return bytes;
}

bool DiskFileStore::holds(const std::string& path, const std::string& bytes)
{
    bool same = false;
    attempt([&] { same = read(path, bytes.size()) == bytes; });
    return same;
}

void DiskFileStore::write(const std::string& path, const std::string& bytes, Durability durability)
{
    if (durability == Durability::fleeting && holds(path, bytes))
        return;
    const std::string target = followed(path);
    struct stat status { };
    const bool exists = ::stat(target.c_str(), &status) == 0;
    if (!exists && errno != ENOENT)
        fail(path, "examined");
    if (exists && !S_ISREG(status.st_mode))
        refuse(path, "is no regular file");
    if (exists && ::access(target.c_str(), W_OK) != 0)
        fail(path, "written"); // the folder's permission alone must not replace it
    if (exists && must_keep_its_identity(status))
        return write_in_place(target, bytes);

    constexpr mode_t readable_and_writable = 0666; // less what the user's mask takes away
    NewFile file(target, readable_and_writable);
    if (!file.is_open() && exists)
        return write_in_place(target, bytes);
    if (!file.is_open())
        fail(path, "created");
    if (exists && ::fchmod(file.file(), status.st_mode & 07777) != 0)
        fail(path, "given its permissions");
    if (!file.complete(bytes, durability) || !file.take_place_of(target))
        fail(path, "written");
}

WriteObstacle DiskFileStore::obstacle_to_writing(const std::string& path)
{
    const fs::path file(path);
    std::error_code failed;
    if (!fs::is_directory(file.parent_path(), failed))
        return WriteObstacle::no_folder;
    const fs::file_status status = fs::status(file, failed);
    const bool is_possible = fs::is_regular_file(status) ? takes_writing(file)
                                                         : status.type() == fs::file_type::not_found
            && takes_writing(file.parent_path()) && file.filename().native().size() <= NAME_MAX;
    return is_possible ? WriteObstacle::none : WriteObstacle::not_writable;
}

ReadObstacle DiskFileStore::obstacle_to_opening(const std::string& path)
{
    std::error_code failed;
    const fs::file_status status = fs::status(path, failed);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return ReadObstacle::no_file;
    if (::access(path.c_str(), R_OK) != 0)
        return ReadObstacle::not_readable;
    const auto size = fs::file_size(path, failed);
    return !failed && size > most_text_bytes ? ReadObstacle::too_long : ReadObstacle::none;
}

} // namespace tessavox
