// What a confined process can still do; each case is a process of its own.
#include "platform/confinement/confinement.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tessavox {

namespace {

namespace fs = std::filesystem;

enum Outcome { refused, went_through, walls_missing };

class Confined : public testing::Test {
protected:
    Confined()
    {
        for (const fs::path& below : { mine, own, data }) {
            fs::create_directories(below);
            std::ofstream(below / "file") << "text";
        }
    }
    ~Confined() override { fs::remove_all(folder); }

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

    const fs::path folder
        = fs::temp_directory_path() / ("tessavox-confinement-" + std::to_string(getpid()));
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

TEST_F(Confined, ReachesNothingButWhatItMayRead)
{
    struct Case {
        const char* what;
        Outcome outcome;
        std::function<bool()> act;
    };
    const pid_t others = getpid();
    const Case cases[] = {
        { "read its data", went_through, [&] { return opens(data / "file", O_RDONLY); } },
        { "read a file", refused, [&] { return opens(mine / "file", O_RDONLY); } },
        { "list a folder", refused, [&] { return opens(mine, O_RDONLY | O_DIRECTORY); } },
        { "reach a file by ..", refused,
            [&] { return opens(data / ".." / "mine" / "file", O_RDONLY); } },
        { "write a file", refused, [&] { return opens(mine / "file", O_WRONLY); } },
        { "write its data", refused, [&] { return opens(data / "file", O_RDWR); } },
        { "make a file", refused, [&] { return opens(data / "new", O_RDONLY | O_CREAT); } },
        { "empty a file", refused, [&] { return truncate((data / "file").c_str(), 0) == 0; } },
        { "delete a file", refused, [&] { return unlink((data / "file").c_str()) == 0; } },
        { "open a file up", refused, [&] { return chmod((data / "file").c_str(), 0777) == 0; } },
        { "reach the network", refused, [] { return socket(AF_INET, SOCK_STREAM, 0) >= 0; } },
        { "reach the session", refused, [] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; } },
        { "run a program", refused, [] { return execl("/bin/true", "true", nullptr) == 0; } },
        { "have a child", refused, [] { return fork() >= 0; } },
        { "signal another", refused, [&] { return kill(others, 0) == 0; } },
        { "have a thread", went_through,
            [] {
                bool ran = false;
                std::thread([&] { ran = true; }).join();
                return ran;
            } },
    };
    Confinement walls;
    walls.readable = { data, "/no/such/folder" };
    for (const Case& one : cases)
        EXPECT_EQ(outcome_of(walls, one.act), one.outcome) << one.what;
}

TEST_F(Confined, WritesInItsFolderAndRunsProgramsWithinTheSameWallsIfItMay)
{
    Confinement walls;
    walls.readable = { "/bin", "/usr/bin", "/lib", "/lib64", "/usr/lib", "/etc/ld.so.cache", data };
    walls.writable = own;
    walls.may_execute = true;
    walls.most_file_bytes = 1 << 20;
    const auto outcome = [&](const std::function<bool()>& act) { return outcome_of(walls, act); };
    EXPECT_EQ(outcome([&] { return opens(own / "new", O_WRONLY | O_CREAT); }), went_through);
    EXPECT_EQ(outcome([&] { return opens(mine / "new", O_WRONLY | O_CREAT); }), refused);
    EXPECT_EQ(outcome([&] { return opens(data / "file", O_WRONLY); }), refused);
    EXPECT_EQ(outcome([&] { return runs("/bin/cat", data / "file"); }), went_through);
    EXPECT_EQ(outcome([&] { return runs("/bin/cat", mine / "file"); }), refused);
    EXPECT_EQ(outcome([] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }), refused);
}

TEST_F(Confined, HasBoundedMemory)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer needs the whole address space";
#endif
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
