// A sound server of the tests' own, with a virtual device whose sound can be recorded.
#pragma once

#include "platform/temporary_folder.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tessavox::voice {

/// A child process, killed at the end.
class ChildProcess {
public:
    ChildProcess() = default;
    /// Starts it with its output going to a file; HOME and the runtime folder are `home`.
    ChildProcess(const std::vector<std::string>& command, const std::filesystem::path& home,
        const std::filesystem::path& output);
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    ~ChildProcess();

    pid_t id() const { return m_id; }
    void signal(int number) const;
    int wait(); // its exit code
    void kill();

private:
    pid_t m_id = -1;
};

/// The server, and PULSE_SERVER set to it. Its one device "nul" runs at 48 kHz stereo.
class SoundServerProcess {
public:
    SoundServerProcess();
    ~SoundServerProcess();

    static bool is_installed();
    void start(); // again after kill(), too
    void kill() { m_server.kill(); }
    void signal(int number) const { m_server.signal(number); }
    /// Runs pactl and waits for it.
    void control(std::vector<std::string> arguments) const;
    const std::filesystem::path& folder() const { return m_folder.path(); }

private:
    const TemporaryFolder m_folder; // for its owner only, as the server asks
    ChildProcess m_server;
};

/// A further device, "exact", 48 kHz stereo, and all that it plays. Unlike the monitor of a device,
/// which may be some milliseconds off where a stream starts or pauses, it tells each sample just as
/// a sound card would get it.
class Recorder {
public:
    explicit Recorder(const SoundServerProcess& server);
    /// The samples up to now.
    std::vector<std::int16_t> samples() const;

private:
    std::filesystem::path m_file;
    ChildProcess m_recorder;
};

void rest_a_millisecond();

/// Looks every millisecond whether `condition` holds, for five seconds at most.
template <class Condition> bool eventually(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (std::chrono::steady_clock::now() < end) {
        if (condition())
            return true;
        rest_a_millisecond();
    }
    return condition();
}

} // namespace tessavox::voice
