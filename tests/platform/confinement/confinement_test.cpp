// What a confined process can still do; each case is a process of its own.
#include "platform/confinement/confinement.h"
#include "tests/platform/files/test_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tessavox {

namespace {

enum Outcome { refused, went_through, walls_missing };

struct Confined : testing::Test {
    Confined()
    {
        for (const char* file : { "mine/file", "own/file", "own/deep/file", "data/file" })
            folder.write(file, "text");
    }

    // Whether `act` goes through in a process that has been confined.
    Outcome outcome_of(const Confinement& walls, const std::function<bool()>& act)
    {
        const pid_t process = fork();
        if (process == 0)
            _exit(!confine(walls).empty() ? walls_missing : act() ? went_through : refused);
        int status = 0;
        waitpid(process, &status, 0);
        return WIFEXITED(status) ? static_cast<Outcome>(WEXITSTATUS(status)) : refused;
    }

    const TestFolder folder;
    const fs::path mine = folder / "mine";
    const fs::path own = folder / "own";
    const fs::path data = folder / "data";
};

bool opens(const fs::path& path, int flags)
{
    return open(path.c_str(), flags | O_CLOEXEC, 0600) >= 0;
}

bool runs(const char* program, const fs::path& argument)
{
    const pid_t process = fork();
    if (process == 0) {
        execl(program, program, argument.c_str(), nullptr);
        _exit(1);
    }
    int status = 0;
    return process > 0 && waitpid(process, &status, 0) == process && status == 0;
}

} // namespace

TEST_F(Confined, ReachesNothingButWhatItMay)
{
    Confinement to_read;
    to_read.readable = { data, "/no/such/folder" };
    Confinement to_run; // programs too, which write into a folder
    to_run.readable
        = { "/bin", "/usr/bin", "/lib", "/lib64", "/usr/lib", "/etc/ld.so.cache", data };
    to_run.writable = own;
    to_run.may_execute = true;
    to_run.most_file_bytes = 1 << 20;
    struct Case {
        const char* what;
        Outcome reading;
        Outcome running;
        std::function<bool()> act;
    };
    const pid_t others = getpid();
    const auto has_thread = [] {
        bool ran = false;
        std::thread([&] { ran = true; }).join();
        return ran;
    };
    const auto has_socket = [](int family) { return socket(family, SOCK_STREAM, 0) >= 0; };
    const fs::path file = data / "file";
    const Case cases[] = {
        { "read its data", went_through, went_through, [&] { return opens(file, O_RDONLY); } },
        { "write its data", refused, refused, [&] { return opens(file, O_RDWR); } },
        { "empty a file", refused, refused, [&] { return truncate(file.c_str(), 0) == 0; } },
        { "delete a file", refused, refused, [&] { return unlink(file.c_str()) == 0; } },
        { "open a file up", refused, refused, [&] { return chmod(file.c_str(), 0777) == 0; } },
        { "make a file", refused, refused, [&] { return opens(data / "new", O_CREAT); } },
        { "read another's file", refused, refused, [&] { return opens(mine / "file", O_RDONLY); } },
        { "reach it by ..", refused, refused, [&] { return opens(data / "../mine/file", 0); } },
        { "write it", refused, refused, [&] { return opens(mine / "file", O_WRONLY); } },
        { "list a folder", refused, refused, [&] { return opens(mine, O_DIRECTORY); } },
        { "write in its folder", refused, went_through,
            [&] { return opens(own / "new", O_WRONLY | O_CREAT); } },
        { "move a file", refused, went_through,
            [&] { return rename((own / "deep/file").c_str(), (own / "moved").c_str()) == 0; } },
        { "reach the network", refused, refused, [&] { return has_socket(AF_INET); } },
        { "reach the session", refused, refused, [&] { return has_socket(AF_UNIX); } },
        { "run a program", refused, went_through, [&] { return runs("/bin/cat", file); } },
        { "run one for it", refused, refused, [&] { return runs("/bin/cat", mine / "file"); } },
        { "have a child", refused, went_through, [] { return fork() >= 0; } },
        { "signal another", refused, refused, [&] { return kill(others, 0) == 0; } },
        { "have a thread", went_through, went_through, has_thread },
    };
    for (const Case& one : cases) {
        EXPECT_EQ(outcome_of(to_read, one.act), one.reading) << one.what;
        EXPECT_EQ(outcome_of(to_run, one.act), one.running) << one.what;
    }
}

TEST_F(Confined, HasBoundedMemory)
{
    Confinement walls;
    walls.most_memory_bytes = 1U << 30;
    const auto takes = [](std::size_t bytes) {
        return mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)
            != MAP_FAILED;
    };
    EXPECT_EQ(outcome_of(walls, [&] { return takes(1U << 20); }), went_through);
    EXPECT_EQ(outcome_of(walls, [&] { return takes(2U << 30); }), refused);
}

} // namespace tessavox
