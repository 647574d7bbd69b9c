#include "tests/platform/voice/sound/sound_server_process.h"

#include "platform/argument_pointers.h"
#include "platform/descriptor.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

bool accepts_connections(const std::filesystem::path& socket_path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket_path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    const Descriptor probe(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return ::connect(probe.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

} // namespace

ChildProcess::ChildProcess(std::vector<std::string> command, const std::filesystem::path& output)
{
    const auto arguments = argument_pointers(command);
    m_id = ::fork();
    if (m_id != 0)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(file, STDOUT_FILENO);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
}

ChildProcess::~ChildProcess()
{
    signal(SIGKILL);
    wait();
}

void ChildProcess::signal(int number) const
{
    if (m_id > 0)
        ::kill(m_id, number);
}

int ChildProcess::wait()
{
    int status = 0;
    if (m_id > 0)
        ::waitpid(std::exchange(m_id, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

SoundServerProcess::SoundServerProcess()
{
    ::setenv("PULSE_SERVER", ("unix:" + (m_folder / "native").string()).c_str(), 1);
    for (const char* variable : { "HOME", "XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH" })
        ::setenv(variable, folder().c_str(), 1);
    start();
}

SoundServerProcess::~SoundServerProcess()
{
    kill();
    ::unsetenv("PULSE_SERVER");
}

bool SoundServerProcess::is_installed()
{
    return ::access("/usr/bin/pulseaudio", X_OK) == 0;
}

void SoundServerProcess::start()
{
    const auto socket = m_folder / "native";
    std::filesystem::remove(socket);
    m_server.emplace(
        std::vector<std::string>{ "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
            "--use-pid-file=no", "--log-target=file:" + (m_folder / "log").string(), "-L",
            "module-null-sink sink_name=nul rate=48000 channels=2 "
            "sink_properties=device.description=Nothing",
            "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket.string() },
        m_folder / "output");
    if (!eventually([&] { return accepts_connections(socket); }))
        throw std::runtime_error("the sound server does not start");
}

void SoundServerProcess::control(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.begin(), "pactl");
    ChildProcess process(arguments, m_folder / "pactl");
    if (process.wait() != 0)
        throw std::runtime_error("pactl failed");
}

Recorder::Recorder(const SoundServerProcess& server)
    : m_file(server.folder() / "recorded")
{
    const std::string pipe = (server.folder() / "pipe").string();
    server.control({ "load-module", "module-pipe-sink", "sink_name=exact", "file=" + pipe,
        "rate=48000", "channels=2", "format=s16le", "use_system_clock_for_timing=yes" });
    m_recorder.emplace(std::vector<std::string>{ "cat", pipe }, m_file);
    if (!eventually([this] { return !samples().empty(); }))
        throw std::runtime_error("nothing is recorded");
}

std::vector<std::int16_t> Recorder::samples() const
{
    std::ifstream file(m_file, std::ios::binary);
    const std::vector<char> bytes{ std::istreambuf_iterator<char>(file), {} };
    std::vector<std::int16_t> samples(bytes.size() / 4 * 2);
    std::copy_n(bytes.data(), samples.size() * 2, reinterpret_cast<char*>(samples.data()));
    return samples;
}

} // namespace tessavox::voice
