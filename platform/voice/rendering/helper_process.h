// One helper process, its socket, and what is on the way through it.
#pragma once

#include "platform/descriptor.h"
#include "platform/voice/rendering/render_wire.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tessavox::voice {

/// Ends with this object: the process is killed and waited for, so none is left behind.
class HelperProcess {
public:
    /// Starts a program, by its path and its arguments, with both its standard input and output on
    /// one socket. The helper ends with the thread that calls this, if this object doesn't end it
    /// before.
    /// @throws Failure if it can't be started.
    explicit HelperProcess(std::vector<std::string> command);
    ~HelperProcess();
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    int descriptor() const { return m_descriptor.get(); }
    /// Whether something waits to be sent.
    bool wants_to_send() const { return m_sent < m_outgoing.size(); }
    /// What it owes an answer to, the oldest first. Job 0 is the greeting.
    const std::deque<std::uint64_t>& jobs() const { return m_jobs; }

    /// Takes a job on; answers come in the same order.
    void assign(std::uint64_t job, const WireRequest& request);
    /// Lets it give up all that it has in hand. The answers still come.
    void drop_all();
    /// Sends and receives what goes without waiting. @throws Failure if the helper has gone.
    void exchange();
    /// The bytes of the answer to the oldest job, if it is complete; drop_answer() then ends it.
    /// @throws Failure if what came is no answer to it.
    std::optional<std::span<const std::byte>> answer() const;
    void drop_answer();
    /// Since when the oldest job is the oldest.
    std::chrono::steady_clock::time_point waiting_since() const { return m_waiting_since; }

private:
    void end();
    void send_some();
    void receive_some();

    pid_t m_process = -1;
    Descriptor m_descriptor;
    WireBytes m_outgoing;
    std::size_t m_sent = 0;
    WireBytes m_incoming;
    std::deque<std::uint64_t> m_jobs{ 0 };
    std::chrono::steady_clock::time_point m_waiting_since = std::chrono::steady_clock::now();
};

} // namespace tessavox::voice
