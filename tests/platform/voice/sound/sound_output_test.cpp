// What every sink has to do, asked of the clock and of a real sound server alike; what is heard of
// that server, and what happens when it goes away.
#include "platform/argument_pointers.h"
#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/temporary_folder.h"
#include "platform/voice/sound/audio_sink.h"
#include "tests/platform/voice/processes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <optional>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

// The sound server's library hands freed packets from one connection to another through a pool of
// its own, whose atomic operations the thread sanitizer does not see. Named here are the places
// where it then suspects the new owner; none of them calls back into the program.
extern "C" const char* __tsan_default_suppressions()
{
    return "race:pa_iochannel_read_with_ancil_data\n"
           "race:pa_packet_new_data\n"
           "race:pa_srbchannel_read\n"
           "race:pa_tagstruct_puts\n";
}

namespace tessavox::voice {
namespace {

/// A child process whose output goes to a file; killed at the end.
class ChildProcess {
public:
    ChildProcess(std::vector<std::string> command, const std::string& output)
    {
        const auto arguments = argument_pointers(command);
        m_id = ::fork();
        if (m_id != 0)
            return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
    ~ChildProcess()
    {
        signal(SIGKILL);
        ::waitpid(m_id, nullptr, 0);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    void signal(int number) const { ::kill(m_id, number); }

private:
    pid_t m_id;
};

/// A sound server, with PULSE_SERVER set to it and a home of its own. Its one device "nul" runs at
/// 48 kHz stereo.
class SoundServerProcess {
public:
    SoundServerProcess()
    {
        ::setenv("PULSE_SERVER", ("unix:" + m_socket).c_str(), 1);
        for (const char* variable : { "HOME", "XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH" })
            ::setenv(variable, m_folder.path().c_str(), 1);
        start();
    }
    ~SoundServerProcess()
    {
        kill();
        ::unsetenv("PULSE_SERVER");
    }

    static bool is_installed() { return ::access("/usr/bin/pulseaudio", X_OK) == 0; }
    void start() // again after kill(), too
    {
        std::filesystem::remove(m_socket);
        m_server.emplace(
            std::vector<std::string>{ "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
                "--use-pid-file=no", "--log-target=file:" + (m_folder / "log").string(), "-L",
                "module-null-sink sink_name=nul rate=48000 channels=2 "
                "sink_properties=device.description=Nothing",
                "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + m_socket },
            m_folder / "output");
        if (!eventually([this] { return accepts_connections(); }))
            throw std::runtime_error("the sound server does not start");
    }
    void kill() { m_server.reset(); }
    void signal(int number) const { m_server->signal(number); }
    static void control(const std::string& arguments)
    {
        if (std::system(("pactl " + arguments + " >/dev/null").c_str()) != 0)
            throw std::runtime_error("pactl " + arguments);
    }
    std::string path(const std::string& name) const { return m_folder / name; }

private:
    bool accepts_connections() const
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        m_socket.copy(address.sun_path, sizeof address.sun_path - 1);
        const Descriptor probe(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        return ::connect(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address)
            == 0;
    }

    const TemporaryFolder m_folder; // for its owner only, as the server asks
    const std::string m_socket = m_folder / "native";
    std::optional<ChildProcess> m_server;
};

/// A further device, "exact", 48 kHz stereo, and all that it plays. Unlike the monitor of a device,
/// which may be some milliseconds off where a stream starts or pauses, it tells each sample just as
/// a sound card would get it.
class Recorder {
public:
    explicit Recorder(const SoundServerProcess& server)
        : m_file(server.path("recorded"))
    {
        const std::string pipe = server.path("pipe");
        SoundServerProcess::control("load-module module-pipe-sink sink_name=exact file=" + pipe
            + " rate=48000 channels=2 format=s16le use_system_clock_for_timing=yes");
        m_recorder.emplace(std::vector<std::string>{ "cat", pipe }, m_file);
        if (!eventually([this] { return std::ifstream(m_file).peek() != EOF; }))
            throw std::runtime_error("nothing is recorded");
    }
    /// The left samples up to now that are no silence.
    std::vector<std::int16_t> heard() const
    {
        std::ifstream file(m_file, std::ios::binary);
        std::vector<std::int16_t> left;
        for (std::int16_t frame[2]; file.read(reinterpret_cast<char*>(frame), sizeof frame);) {
            if (frame[0] != 0)
                left.push_back(frame[0]);
        }
        return left;
    }

private:
    std::string m_file;
    std::optional<ChildProcess> m_recorder;
};

enum class Kind { clock, server };

struct Case {
    Kind kind;
    PcmFormat format;
};

struct AudioSinks : testing::TestWithParam<Case> {
    static void TearDownTestSuite()
    {
        server.reset();
        recorder.reset();
        process.reset();
    }

    void SetUp() override
    {
        if (GetParam().kind == Kind::clock) {
            sink = make_clock_sink(GetParam().format);
            return;
        }
        if (!SoundServerProcess::is_installed())
            GTEST_SKIP() << "there is no sound server on this machine";
        if (!process) {
            process.emplace();
            recorder.emplace(*process);
            server = make_pulse_server("Tessavox test");
        }
        sink = server->open(GetParam().format, "exact", [] {});
    }

    /// Writes so many frames as room comes free; watches the rules of played() meanwhile.
    void write(std::size_t frames)
    {
        while (frames > 0 && sink->alive()) {
            const std::size_t now = std::min(frames, sink->writable());
            sink->write(std::vector<std::byte>(
                now * static_cast<std::size_t>(sink->format().block_align())));
            frames -= now;
            written += now;
            watch();
            rest_a_millisecond();
        }
    }

    std::uint64_t watch()
    {
        const std::uint64_t now = sink->played();
        EXPECT_GE(now, last);
        EXPECT_LE(now, written);
        return last = now;
    }

    std::size_t frames(int milliseconds) const
    {
        return static_cast<std::size_t>(sink->format().rate * milliseconds / 1000);
    }

    bool plays_to_the_end()
    {
        return eventually([this] { return watch() == written; });
    }

    inline static std::optional<SoundServerProcess> process;
    inline static std::optional<Recorder> recorder;
    inline static std::unique_ptr<SoundServer> server;
    std::unique_ptr<AudioSink> sink;
    std::uint64_t written = 0;
    std::uint64_t last = 0;
};

TEST_P(AudioSinks, PlaysHoweverFewFramesAtFinishAndMoreMayFollow)
{
    EXPECT_EQ(sink->format(), GetParam().format);
    EXPECT_TRUE(sink->alive());
    EXPECT_EQ(sink->played(), 0U);
    for (const std::size_t count : { std::size_t{ 3 }, std::size_t{ 1 }, frames(250) }) {
        write(count);
        sink->finish();
        ASSERT_TRUE(plays_to_the_end()) << count;
    }
}

TEST_P(AudioSinks, TakesLittleMoreThanATenthOfASecondAhead)
{
    sink->pause();
    ASSERT_TRUE(eventually([this] { return sink->writable() > 0; }));
    std::size_t taken = 0;
    for (int round = 0; round < 50; ++round) {
        const std::size_t room = sink->writable();
        sink->write(
            std::vector<std::byte>(room * static_cast<std::size_t>(sink->format().block_align())));
        taken += room;
        rest_a_millisecond();
    }
    EXPECT_GT(taken, frames(40));
    EXPECT_LT(taken, frames(150));
    EXPECT_EQ(sink->played(), 0U);
}

TEST_P(AudioSinks, StandsStillWhilePausedAndGoesOnAlsoAfterAFlush)
{
    for (const auto& [paused, flushed] :
        { std::pair(true, false), { false, true }, { true, true } }) {
        SCOPED_TRACE(testing::Message() << paused << flushed);
        write(frames(70));
        const std::uint64_t before = last;
        ASSERT_TRUE(eventually([&] { return watch() > before; }));
        if (paused)
            sink->pause();
        if (flushed) {
            sink->flush();
            const std::uint64_t dropped = written - sink->played();
            EXPECT_GT(dropped, 0U);
            written -= dropped;
        }
        const std::uint64_t at = watch();
        for (int look = 0; paused && look < 100; ++look) {
            ASSERT_EQ(watch(), at);
            rest_a_millisecond();
        }
        write(frames(paused ? 20 : 120)); // without a pause more than fits: the room is given back
        EXPECT_TRUE(!paused || watch() == at);
        sink->finish(); // in the pause, as it happens when the last sentence is ready
        sink->resume();
        ASSERT_TRUE(plays_to_the_end());
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, AudioSinks,
    testing::Values(Case{ Kind::clock, { 48000, 16, 2 } }, Case{ Kind::clock, { 8000, 8, 1 } },
        Case{ Kind::server, { 22050, 16, 1 } }, Case{ Kind::server, { 8000, 8, 1 } }),
    [](const auto& info) {
        return std::string(info.param.kind == Kind::clock ? "Clock" : "Server")
            + std::to_string(info.param.format.rate);
    });

constexpr PcmFormat device_format{ .rate = 48000, .bits = 16, .channels = 2 };

struct PulseServer : testing::Test {
    void SetUp() override
    {
        if (!SoundServerProcess::is_installed())
            GTEST_SKIP() << "there is no sound server on this machine";
        process = std::make_unique<SoundServerProcess>();
        server = make_pulse_server("Tessavox test");
    }

    std::unique_ptr<AudioSink> open(const std::string& output = "")
    {
        return server->open(device_format, output, [this] { ++wakes; });
    }

    std::unique_ptr<SoundServerProcess> process;
    std::unique_ptr<SoundServer> server;
    std::atomic<int> wakes = 0;
};

// Frames that are told apart: the left counts from 1, the right is its negative.
class Counter {
public:
    void write(AudioSink& sink, std::size_t frames)
    {
        while (frames > 0 && sink.alive()) {
            const std::size_t now = std::min(frames, sink.writable());
            std::vector<std::int16_t> samples;
            for (std::size_t i = 0; i < now; ++i) {
                samples.push_back(++m_count);
                samples.push_back(static_cast<std::int16_t>(-m_count));
            }
            sink.write(std::as_bytes(std::span(samples)));
            frames -= now;
            rest_a_millisecond();
        }
    }
    std::int16_t count() const { return m_count; }

private:
    std::int16_t m_count = 0;
};

std::vector<std::int16_t> counted(int from, int to)
{
    std::vector<std::int16_t> numbers;
    for (int number = from; number <= to; ++number)
        numbers.push_back(static_cast<std::int16_t>(number));
    return numbers;
}

TEST_F(PulseServer, EverySampleIsHeardOnceThroughPausesTooFromTheFirstToTheLast)
{
    const Recorder recorder(*process);
    const auto sink = open("exact");
    Counter counter;
    for (const std::size_t frames : { 4800, 1234, 9000 }) {
        counter.write(*sink, frames);
        sink->pause();
        const auto at = sink->played();
        for (int look = 0; look < 30; ++look) {
            ASSERT_EQ(sink->played(), at);
            rest_a_millisecond();
        }
        sink->resume();
    }
    sink->finish();
    ASSERT_TRUE(eventually([&] { return sink->played() == std::size_t(counter.count()); }));
    EXPECT_TRUE(
        eventually([&] { return recorder.heard().size() >= std::size_t(counter.count()); }));
    EXPECT_EQ(recorder.heard(), counted(1, counter.count()));
}

TEST_F(PulseServer, ListsItsOutputsAndOneThatIsTakenAwayEndsItsStream)
{
    ASSERT_TRUE(eventually([&] { return server->outputs().size() == 1; }));
    EXPECT_EQ(server->outputs().front().name, "nul");
    EXPECT_EQ(server->outputs().front().description, "Nothing");
    process->control("load-module module-null-sink sink_name=second");
    EXPECT_TRUE(eventually([&] { return server->outputs().size() == 2; }));
    EXPECT_THROW(open("no such output"), Failure);
    const auto first = open("nul");
    const auto second = open("second");
    EXPECT_TRUE(first->alive() && second->alive());
    process->control("unload-module module-null-sink");
    EXPECT_TRUE(eventually([&] { return !second->alive() && !first->alive(); }));
    process->control("load-module module-null-sink sink_name=third");
    EXPECT_TRUE(open("third")->alive());
}

TEST_F(PulseServer, AKilledServerEndsTheStreamAndTheNextOpenFindsItsSuccessor)
{
    auto sink = open();
    Counter counter;
    counter.write(*sink, 2400);
    int before = wakes;
    EXPECT_TRUE(eventually([&] { return wakes > before; })) << "when room comes free";
    before = wakes;
    process->kill();
    EXPECT_TRUE(eventually([&] { return !sink->alive(); }));
    EXPECT_GT(wakes, before);
    const auto at = sink->played();
    sink->write(std::vector<std::byte>(400));
    sink->pause();
    sink->resume();
    sink->finish();
    sink->flush();
    EXPECT_EQ(sink->writable(), 0U);
    EXPECT_EQ(sink->played(), at);
    EXPECT_THROW(open(), Failure);
    EXPECT_TRUE(server->outputs().empty());
    process->start();
    EXPECT_TRUE(open()->alive());
    EXPECT_FALSE(sink->alive());
}

TEST_F(PulseServer, AServerThatDoesNotAnswerIsGivenUpAndHoldsNobody)
{
    const auto sink = open();
    Counter().write(*sink, 100);
    process->signal(SIGSTOP);
    sink->write(std::vector<std::byte>(400));
    sink->pause();
    sink->resume();
    sink->finish();
    EXPECT_LE(sink->played(), 200U);
    EXPECT_THROW(open(), Failure); // it was connected
    EXPECT_THROW(open(), Failure); // it is connected anew
    process->signal(SIGCONT);
    EXPECT_TRUE(eventually([&] { return attempt([&] { open(); }); }));
    EXPECT_TRUE(sink->alive());
}

} // namespace
} // namespace tessavox::voice
