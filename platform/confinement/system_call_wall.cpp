// The wall around system calls: seccomp, https://docs.kernel.org/userspace-api/seccomp_filter.html
#include "platform/confinement/confinement.h"

#ifdef TESSAVOX_HAS_SECCOMP

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <span>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tessavox::walls {

namespace {

// What is in no table fails with EPERM, so a library that tries it for want of something better,
// such as a sound server's, goes on without.
constexpr int reading_and_waiting[] = {
    // descriptors that are open
    SCMP_SYS(read),
    SCMP_SYS(write),
    SCMP_SYS(readv),
    SCMP_SYS(writev),
    SCMP_SYS(pread64),
    SCMP_SYS(preadv),
    SCMP_SYS(lseek),
    SCMP_SYS(close),
    SCMP_SYS(close_range),
    SCMP_SYS(dup),
    SCMP_SYS(dup2),
    SCMP_SYS(fcntl),
    SCMP_SYS(fadvise64),
    SCMP_SYS(pipe),
    SCMP_SYS(pipe2),
    SCMP_SYS(eventfd2),
    SCMP_SYS(poll),
    SCMP_SYS(ppoll),
    SCMP_SYS(select),
    SCMP_SYS(pselect6),
    // names of files
    SCMP_SYS(stat),
    SCMP_SYS(lstat),
    SCMP_SYS(fstat),
    SCMP_SYS(newfstatat),
    SCMP_SYS(statx),
    SCMP_SYS(statfs),
    SCMP_SYS(fstatfs),
    SCMP_SYS(access),
    SCMP_SYS(faccessat),
    SCMP_SYS(faccessat2),
    SCMP_SYS(readlink),
    SCMP_SYS(readlinkat),
    SCMP_SYS(getcwd),
    SCMP_SYS(getdents64),
    SCMP_SYS(umask),
    // memory
    SCMP_SYS(brk),
    SCMP_SYS(mmap),
    SCMP_SYS(munmap),
    SCMP_SYS(mremap),
    SCMP_SYS(mprotect),
    SCMP_SYS(madvise),
    SCMP_SYS(mincore),
    SCMP_SYS(membarrier),
    // threads and signals to itself
    SCMP_SYS(futex),
    SCMP_SYS(set_robust_list),
    SCMP_SYS(get_robust_list),
    SCMP_SYS(rseq),
    SCMP_SYS(sched_yield),
    SCMP_SYS(sched_getaffinity),
    SCMP_SYS(rt_sigaction),
    SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn),
    SCMP_SYS(sigaltstack),
    SCMP_SYS(restart_syscall),
    SCMP_SYS(exit),
    SCMP_SYS(exit_group),
    // time and who it is
    SCMP_SYS(clock_gettime),
    SCMP_SYS(clock_getres),
    SCMP_SYS(clock_nanosleep),
    SCMP_SYS(nanosleep),
    SCMP_SYS(gettimeofday),
    SCMP_SYS(time),
    SCMP_SYS(times),
    SCMP_SYS(getrusage),
    SCMP_SYS(getrandom),
    SCMP_SYS(uname),
    SCMP_SYS(sysinfo),
    SCMP_SYS(getpid),
    SCMP_SYS(getppid),
    SCMP_SYS(gettid),
    SCMP_SYS(getuid),
    SCMP_SYS(geteuid),
    SCMP_SYS(getgid),
    SCMP_SYS(getegid),
    SCMP_SYS(getrlimit),
};

constexpr int writing[] = {
    SCMP_SYS(open),
    SCMP_SYS(openat),
    SCMP_SYS(creat),
    SCMP_SYS(pwrite64),
    SCMP_SYS(ftruncate),
    SCMP_SYS(fallocate),
    SCMP_SYS(fsync),
    SCMP_SYS(fdatasync),
    SCMP_SYS(rename),
    SCMP_SYS(renameat),
    SCMP_SYS(renameat2),
    SCMP_SYS(unlink),
    SCMP_SYS(unlinkat),
    SCMP_SYS(mkdir),
    SCMP_SYS(mkdirat),
    SCMP_SYS(rmdir),
};

// What programs of others need to run at all: shells, interpreters, and what computes on many
// threads. Rights and times of files are not among it, because the wall around files lets whoever
// may read one change them. None of it leaves the process group, so that whoever started it can end
// it whole.
constexpr int executing[] = {
    // programs and their children
    SCMP_SYS(execve),
    SCMP_SYS(clone),
    SCMP_SYS(fork),
    SCMP_SYS(vfork),
    SCMP_SYS(wait4),
    SCMP_SYS(waitid),
    SCMP_SYS(arch_prctl),
    SCMP_SYS(set_tid_address),
    SCMP_SYS(prlimit64),
    SCMP_SYS(socketpair),
    // descriptors and files
    SCMP_SYS(dup3),
    SCMP_SYS(pwritev),
    SCMP_SYS(readahead),
    SCMP_SYS(sendfile),
    SCMP_SYS(splice),
    SCMP_SYS(copy_file_range),
    SCMP_SYS(flock),
    SCMP_SYS(chdir),
    SCMP_SYS(fchdir),
    SCMP_SYS(getdents),
    SCMP_SYS(epoll_create),
    SCMP_SYS(epoll_create1),
    SCMP_SYS(epoll_ctl),
    SCMP_SYS(epoll_wait),
    SCMP_SYS(epoll_pwait),
    SCMP_SYS(eventfd),
    SCMP_SYS(timerfd_create),
    SCMP_SYS(timerfd_settime),
    SCMP_SYS(signalfd4),
    SCMP_SYS(memfd_create),
    // memory and processors
    SCMP_SYS(msync),
    SCMP_SYS(mlock),
    SCMP_SYS(munlock),
    SCMP_SYS(mbind),
    SCMP_SYS(get_mempolicy),
    SCMP_SYS(getcpu),
    SCMP_SYS(sched_setaffinity),
    SCMP_SYS(sched_getparam),
    SCMP_SYS(sched_getscheduler),
    SCMP_SYS(sched_get_priority_max),
    SCMP_SYS(sched_get_priority_min),
    SCMP_SYS(getpriority),
    // signals and timers of its own
    SCMP_SYS(alarm),
    SCMP_SYS(pause),
    SCMP_SYS(setitimer),
    SCMP_SYS(getitimer),
    SCMP_SYS(timer_create),
    SCMP_SYS(timer_settime),
    SCMP_SYS(timer_delete),
    SCMP_SYS(rt_sigpending),
    SCMP_SYS(rt_sigsuspend),
    SCMP_SYS(rt_sigtimedwait),
    // who it is
    SCMP_SYS(getpgrp),
    SCMP_SYS(getpgid),
    SCMP_SYS(getsid),
    SCMP_SYS(getgroups),
    SCMP_SYS(getresuid),
    SCMP_SYS(getresgid),
    SCMP_SYS(capget),
};

class Filter {
public:
    Filter()
        : m_context(seccomp_init(SCMP_ACT_ERRNO(EPERM)))
        , m_complete(m_context != nullptr)
    {
    }
    ~Filter() { seccomp_release(m_context); }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    template <class... Conditions> void allow(int call, Conditions... conditions)
    {
        m_complete = m_complete
            && seccomp_rule_add(
                   m_context, SCMP_ACT_ALLOW, call, sizeof...(conditions), conditions...)
                == 0;
    }
    void allow_all(std::span<const int> calls)
    {
        for (const int call : calls)
            allow(call);
    }
    /// The caller is told that the kernel has no such call, and takes an older one.
    void hide(int call)
    {
        m_complete
            = m_complete && seccomp_rule_add(m_context, SCMP_ACT_ERRNO(ENOSYS), call, 0) == 0;
    }
    bool put_up() { return m_complete && seccomp_load(m_context) == 0; }

private:
    const scmp_filter_ctx m_context;
    bool m_complete;
};

/// What argument number `index` of a call is compared with; the library's own words for this are C
/// only.
scmp_arg_cmp argument(
    unsigned index, scmp_compare comparison, scmp_datum_t first, scmp_datum_t second = 0)
{
    return { index, comparison, first, second };
}

void allow_opening_to_read(Filter& filter)
{
    constexpr scmp_datum_t writes = O_ACCMODE | O_CREAT | O_TRUNC;
    filter.allow(SCMP_SYS(open), argument(1, SCMP_CMP_MASKED_EQ, writes, O_RDONLY));
    filter.allow(SCMP_SYS(openat), argument(2, SCMP_CMP_MASKED_EQ, writes, O_RDONLY));
}

void allow_threads(Filter& filter)
{
    filter.allow(SCMP_SYS(clone), argument(0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD));
}

// Asking whether a descriptor is a terminal, and what is common to all descriptors. Terminals
// themselves take commands by the same call.
void allow_descriptor_controls(Filter& filter)
{
    for (const scmp_datum_t request : { TCGETS, FIOCLEX, FIONCLEX, FIONBIO, FIONREAD })
        filter.allow(SCMP_SYS(ioctl), argument(1, SCMP_CMP_MASKED_EQ, 0xFFFF'FFFF, request));
}

// What concerns this process, and no other.
void allow_own(Filter& filter)
{
    const auto self = static_cast<scmp_datum_t>(getpid());
    filter.allow(SCMP_SYS(tgkill), argument(0, SCMP_CMP_EQ, self)); // abort()
    filter.allow(SCMP_SYS(kill), argument(0, SCMP_CMP_EQ, self));
    constexpr scmp_datum_t none = 0; // limits are asked for, not set
    filter.allow(SCMP_SYS(prlimit64), argument(0, SCMP_CMP_EQ, 0), argument(2, SCMP_CMP_EQ, none));
    // A filter cannot look into the structure that this one takes.
    filter.hide(SCMP_SYS(clone3));
}

} // namespace

bool confine_system_calls(const Confinement& confinement)
{
    Filter filter;
    filter.allow_all(reading_and_waiting);
    if (confinement.writable.empty())
        allow_opening_to_read(filter);
    else
        filter.allow_all(writing);
    if (confinement.may_execute) {
        filter.allow_all(executing);
        allow_descriptor_controls(filter);
    } else {
        allow_threads(filter);
    }
    allow_own(filter);
    return filter.put_up();
}

} // namespace tessavox::walls

#else

namespace tessavox::walls {

bool confine_system_calls(const Confinement&)
{
    return false;
}

} // namespace tessavox::walls

#endif
