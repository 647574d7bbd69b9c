// The wall around files: Landlock, https://docs.kernel.org/userspace-api/landlock.html
#include "platform/confinement/confinement.h"

#include "platform/descriptor.h"

#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tessavox::walls {

namespace {

// What a kernel knows depends on its version of the interface; the header of an older system does
// not name all of it.
constexpr std::uint64_t access_refer = 1U << 13; // version 2
constexpr std::uint64_t access_truncate = 1U << 14; // 3
constexpr std::uint64_t access_device_control = 1U << 15; // 5
constexpr std::uint64_t network_bind_and_connect = 0b11; // 4
constexpr std::uint64_t scope_sockets_and_signals = 0b11; // 6

constexpr std::uint64_t read_file = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr std::uint64_t read_folder = read_file | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t write_files = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_FILE
    | LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_DIR
    | access_refer | access_truncate;

struct Rules {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scopes = 0;
};

Rules all_rules(long version)
{
    Rules rules;
    rules.files = (std::uint64_t{ LANDLOCK_ACCESS_FS_MAKE_SYM } << 1) - 1;
    rules.files |= version >= 2 ? access_refer : 0;
    rules.files |= version >= 3 ? access_truncate : 0;
    rules.files |= version >= 5 ? access_device_control : 0;
    rules.network = version >= 4 ? network_bind_and_connect : 0;
    rules.scopes = version >= 6 ? scope_sockets_and_signals : 0;
    return rules;
}

// A path that is not there needs no rule.
bool allow(const Descriptor& ruleset, const std::string& path, std::uint64_t access)
{
    const Descriptor place(open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat found;
    if (!place.is_open() || fstat(place.get(), &found) != 0)
        return true;
    constexpr std::uint64_t of_a_file
        = read_file | LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE | access_truncate;
    landlock_path_beneath_attr rule{};
    rule.parent_fd = place.get();
    rule.allowed_access = S_ISDIR(found.st_mode) ? access : access & of_a_file;
    return syscall(SYS_landlock_add_rule, ruleset.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

} // namespace

bool confine_files(const Confinement& confinement)
{
    const long version
        = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return false;
    const Rules rules = all_rules(version);
    // A kernel takes no more of the structure than its version has.
    const std::size_t size = version >= 6 ? sizeof rules
        : version >= 4                    ? 2 * sizeof rules.files
                                          : sizeof rules.files;
    const Descriptor ruleset(
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &rules, size, 0)));
    if (!ruleset.is_open())
        return false;
    const std::uint64_t read
        = read_folder | (confinement.may_execute ? LANDLOCK_ACCESS_FS_EXECUTE : 0);
    bool allowed = true;
    for (const std::string& path : confinement.readable)
        allowed = allow(ruleset, path, read) && allowed;
    if (!confinement.writable.empty())
        allowed = allow(ruleset, confinement.writable, (read_folder | write_files) & rules.files)
            && allowed;
    // Hardly a script can do without it.
    if (confinement.may_execute)
        allowed = allow(ruleset, "/dev/null", read_file | (write_files & rules.files)) && allowed;
    return allowed && syscall(SYS_landlock_restrict_self, ruleset.get(), 0) == 0;
}

} // namespace tessavox::walls
