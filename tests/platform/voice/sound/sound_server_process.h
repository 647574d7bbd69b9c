// A sound server of the tests' own, with a virtual device whose sound can be recorded.
#pragma once

#include "platform/temporary_folder.h"
#include "tests/platform/voice/processes.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tessavox::voice {

/// A child process, killed at the end.
class ChildProcess {
public:
    /// Starts it with its output going to a file.
    ChildProcess(std::vector<std::string> command, const std::filesystem::path& output);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void signal(int number) const;
    int wait(); // its exit code

private:
    pid_t m_id;
};

/// The server, with PULSE_SERVER set to it and a home of its own. Its one device "nul" runs at 48
/// kHz stereo.
class SoundServerProcess {
public:
    SoundServerProcess();
    ~SoundServerProcess();

    static bool is_installed();
    void start(); // again after kill(), too
    void kill() { m_server.reset(); }
    void signal(int number) const { m_server->signal(number); }
    /// Runs pactl and waits for it.
    void control(std::vector<std::string> arguments) const;
    const std::filesystem::path& folder() const { return m_folder.path(); }

private:
    const TemporaryFolder m_folder; // for its owner only, as the server asks
    std::optional<ChildProcess> m_server;
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
    std::optional<ChildProcess> m_recorder;
};

} // namespace tessavox::voice
