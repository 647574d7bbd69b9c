// Other processes: waiting for what they do, and a look at them from outside.
#pragma once

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace tessavox::voice {

inline void rest_a_millisecond()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

/// Looks every millisecond whether `condition` holds, up to a bound that no healthy run comes near.
template <class Condition> bool eventually(Condition condition)
{
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition() && std::chrono::steady_clock::now() < bound)
        rest_a_millisecond();
    return condition();
}

/// The oldest first.
inline std::vector<pid_t> children_of(pid_t process)
{
    std::vector<pid_t> found;
    for (const auto& thread :
        std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream file(thread.path() / "children");
        for (pid_t child = 0; file >> child;)
            found.push_back(child);
    }
    std::ranges::sort(found);
    return found;
}

/// What /proc/PID/status tells; empty if the process has gone.
inline std::string status_of(pid_t process, const std::string& field)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(field + ":\t"))
            return line.substr(field.size() + 2);
    return {};
}

/// Also if nobody has asked yet how it ended.
inline bool is_gone(pid_t process)
{
    const std::string state = status_of(process, "State");
    return state.empty() || state.starts_with("Z");
}

} // namespace tessavox::voice
