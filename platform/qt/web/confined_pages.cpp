#include "platform/qt/web/confined_pages.h"

#include <QByteArray>

#include <cerrno>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessavox {
namespace {

constexpr const char* unconfined_by_test_bed = "QTWEBENGINE_DISABLE_SANDBOX";

/// The engine puts its processes into a name space of their own, as users may in most systems.
bool may_make_name_space()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(unshare(CLONE_NEWUSER) == 0 ? 0 : 1);
    int status = 1;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    return child > 0 && status == 0;
}

} // namespace

bool can_confine_pages()
{
    if (geteuid() == 0)
        return qgetenv(unconfined_by_test_bed) == "1";
    qunsetenv(unconfined_by_test_bed);
    return may_make_name_space();
}

} // namespace tessavox
