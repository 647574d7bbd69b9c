#include "platform/voice/programs/confined_program.h"

#include "platform/argument_pointers.h"
#include "platform/confinement/confinement.h"
#include "platform/failure.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

namespace fs = std::filesystem;

// The largest models of the usual engines need less than half of it.
constexpr rlim_t most_memory_bytes = rlim_t{ 4 } << 30;
// Many minutes of sound, and more than the 64 MB that the sound server's library reserves in memory
// before it finds out that there is no server: a program that links it would be ended otherwise.
constexpr std::uint64_t most_file_bytes = 128U << 20;

constexpr const char* system_places[] = { "/bin", "/sbin", "/lib", "/lib32", "/lib64", "/usr",
    "/opt", "/etc", "/dev/zero", "/dev/random", "/dev/urandom", "/proc/self", "/proc/cpuinfo",
    "/proc/meminfo", "/proc/stat", "/proc/filesystems", "/proc/sys/vm/overcommit_memory",
    "/sys/devices/system/cpu", "/sys/devices/system/node" };

// What tells of neither display nor session.
constexpr const char* kept_variables[]
    = { "PATH", "HOME", "USER", "LOGNAME", "LANG", "LC_ALL", "LC_CTYPE", "TZ" };

std::vector<std::string> environment_in(const fs::path& folder)
{
    std::vector<std::string> environment;
    for (const char* name : kept_variables)
        if (const char* value = std::getenv(name))
            environment.push_back(std::string(name) + "=" + value);
    for (const char* name : { "TMPDIR", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR" })
        environment.push_back(std::string(name) + "=" + folder.string());
    return environment;
}

void put_up_walls(const ProgramOrder& order)
{
    Confinement walls;
    walls.readable.assign(std::begin(system_places), std::end(system_places));
    walls.readable.insert(walls.readable.end(), order.readable.begin(), order.readable.end());
    walls.writable = order.folder;
    walls.may_execute = true;
    walls.most_file_bytes = most_file_bytes;
    confine(walls);
    // The last, because a sanitizer in this process needs more of it.
    const rlimit memory{ most_memory_bytes, most_memory_bytes };
    setrlimit(RLIMIT_AS, &memory);
}

/// A pipe, of which the program gets one end.
struct Pipe {
    Descriptor reader;
    Descriptor writer;

    bool open()
    {
        std::array<int, 2> ends{ -1, -1 };
        const bool opened = pipe2(ends.data(), O_CLOEXEC) == 0;
        reader = Descriptor(ends[0]);
        writer = Descriptor(ends[1]);
        return opened;
    }
};

/// What stays here of a pipe.
Descriptor kept(Descriptor end)
{
    fcntl(end.get(), F_SETFL, O_NONBLOCK);
    return end;
}

[[noreturn]] void become(const ProgramOrder& order, pid_t parent, std::array<int, 3> streams)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(EXIT_FAILURE);
    for (int stream = 0; stream < static_cast<int>(streams.size()); ++stream)
        dup2(streams[static_cast<std::size_t>(stream)], stream);
    close_range(STDERR_FILENO + 1, ~0U, 0);
    for (int number = 1; number < NSIG; ++number)
        std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::vector<std::string> arguments = order.arguments;
    std::vector<std::string> environment = environment_in(order.folder);
    const std::vector<char*> argument_list = argument_pointers(arguments);
    const std::vector<char*> environment_list = argument_pointers(environment);
    constexpr int cannot_run = 127;
    if (chdir(order.folder.c_str()) == 0) {
        put_up_walls(order);
        execve(argument_list[0], argument_list.data(), environment_list.data());
    }
    dprintf(STDERR_FILENO, "can't run %s: %s\n", arguments.front().c_str(), std::strerror(errno));
    _exit(cannot_run);
}

} // namespace

ConfinedProgram::ConfinedProgram(const ProgramOrder& order)
{
    Pipe input;
    Pipe output;
    Pipe errors;
    if (!input.open() || !output.open() || !errors.open())
        throw Failure("no pipe for a program");
    // What it leaves behind comes to this process, which then waits for the end of all of it.
    prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
    const pid_t parent = getpid();
    m_process = fork();
    if (m_process == 0)
        become(order, parent, { input.reader.get(), output.writer.get(), errors.writer.get() });
    if (m_process < 0)
        throw Failure("no process for a program");
    setpgid(m_process, m_process); // whoever of both comes first
    m_process_descriptor = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, m_process, 0)));
    m_input = kept(std::move(input.writer));
    m_output = kept(std::move(output.reader));
    m_errors = kept(std::move(errors.reader));
}

ConfinedProgram::~ConfinedProgram()
{
    kill(-m_process, SIGKILL);
    while (waitpid(-m_process, nullptr, 0) > 0 || errno == EINTR) { }
}

std::optional<std::string> ConfinedProgram::end() const
{
    siginfo_t info{};
    if (waitid(P_PID, static_cast<id_t>(m_process), &info, WEXITED | WNOHANG | WNOWAIT) != 0
        || info.si_pid == 0)
        return std::nullopt;
    return (info.si_code == CLD_EXITED ? "ended with " : "was ended by signal ")
        + std::to_string(info.si_status);
}

bool ConfinedProgram::ended_well() const
{
    return end() == "ended with 0";
}

} // namespace tessavox::voice
