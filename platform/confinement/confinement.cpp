#include "platform/confinement/confinement.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace tessavox {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
constexpr bool sanitized
    = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || false;
#else
constexpr bool sanitized = false;
#endif

constexpr rlim_t most_open_files = 64;

bool limit(__rlimit_resource what, rlim_t most)
{
    const rlimit both{ most, most };
    return setrlimit(what, &both) == 0;
}

bool limit_resources(const Confinement& confinement)
{
    bool limited = limit(RLIMIT_CORE, 0) && limit(RLIMIT_NOFILE, most_open_files)
        && limit(RLIMIT_FSIZE, confinement.most_file_bytes);
    if (confinement.most_memory_bytes != 0 && !sanitized)
        limited = limit(RLIMIT_AS, confinement.most_memory_bytes) && limited;
    return limited;
}

} // namespace

std::vector<std::string> confine(const Confinement& confinement)
{
    std::vector<std::string> gaps;
    if (!limit_resources(confinement))
        gaps.emplace_back("its memory and its files are not bounded");
    // A core dump, which a program of the system may store, would hold the text. Nor can another
    // process of the user's look into this one.
    if (prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0)
        gaps.emplace_back("a crash may leave a dump of its memory");
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        gaps.emplace_back("a program that it starts may have more rights than it");
    if (!walls::confine_files(confinement))
        gaps.emplace_back("it can open every file that the user can");
    // The last one: it forbids what puts up the others.
    if (!walls::confine_system_calls(confinement))
        gaps.emplace_back("it can use the network and the services of the session");
    return gaps;
}

} // namespace tessavox
