#include "tests/platform/voice/sound/sound_server_process.h"

#include "platform/argument_pointers.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>
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
    const std::string path = socket_path.string();
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int probe = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool connected
        = ::connect(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(probe);
    return connected;
}

} // namespace

void rest_a_millisecond()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

ChildProcess::ChildProcess(const std::vector<std::string>& command,
    const std::filesystem::path& home, const std::filesystem::path& output)
{
    std::vector<std::string> arguments = command;
    const char* const server = std::getenv("PULSE_SERVER");
    std::vector<std::string> environment{ "HOME=" + home.string(),
        "XDG_RUNTIME_DIR=" + home.string(), "PULSE_RUNTIME_PATH=" + home.string(),
        std::string("PATH=") + std::getenv("PATH"),
        std::string("PULSE_SERVER=") + (server ? server : "") };
    const auto argument_list = argument_pointers(arguments);
    const auto environment_list = argument_pointers(environment);
    m_id = ::fork();
    if (m_id != 0)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(file, STDOUT_FILENO);
    ::execvpe(argument_list[0], argument_list.data(), environment_list.data());
    ::_exit(127);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : m_id(std::exchange(other.m_id, -1))
{
}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept
{
    std::swap(m_id, other.m_id);
    return *this;
}

ChildProcess::~ChildProcess()
{
    kill();
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

void ChildProcess::kill()
{
    signal(SIGKILL);
    wait();
}

SoundServerProcess::SoundServerProcess()
{
    ::setenv("PULSE_SERVER", ("unix:" + (m_folder / "native").string()).c_str(), 1);
    start();
}

SoundServerProcess::~SoundServerProcess()
{
    m_server.kill();
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
    m_server = ChildProcess(
        { "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
            "--log-target=file:" + (m_folder / "log").string(), "-L",
            "module-null-sink sink_name=nul rate=48000 channels=2 "
            "sink_properties=device.description=Nothing",
            "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket.string() },
        folder(), m_folder / "output");
    if (!eventually([&] { return accepts_connections(socket); }))
        throw std::runtime_error("the sound server does not start");
}

void SoundServerProcess::control(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.begin(), "pactl");
    ChildProcess process(arguments, folder(), m_folder / "pactl");
    if (process.wait() != 0)
        throw std::runtime_error("pactl failed");
}

Recorder::Recorder(const SoundServerProcess& server)
    : m_file(server.folder() / "recorded")
{
    const std::string pipe = (server.folder() / "pipe").string();
    server.control({ "load-module", "module-pipe-sink", "sink_name=exact", "file=" + pipe,
        "rate=48000", "channels=2", "format=s16le", "use_system_clock_for_timing=yes" });
    m_recorder = ChildProcess({ "cat", pipe }, server.folder(), m_file);
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
