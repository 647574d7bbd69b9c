// One helper process, its socket, and what is on the way through it.
#pragma once

#include "platform/voice/engines/render_wire.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>

#include <sys/types.h>

namespace tessavox::voice {

/// Ends with this object: the process is killed and waited for, so none is left behind.
class HelperProcess {
public:
    /// Starts `path` with both its standard input and output on one socket.
    /// @throws Failure if it can't be started.
    explicit HelperProcess(const std::string& path);
    ~HelperProcess();
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    int descriptor() const { return m_descriptor; }
    /// Whether something waits to be sent.
    bool wants_to_send() const { return m_sent < m_outgoing.size(); }
    const std::deque<std::uint64_t>& jobs() const { return m_jobs; }

    /// Takes a job on; answers come in the same order.
    void assign(std::uint64_t job, const WireRequest& request);
    /// Sends and receives what goes without waiting. @throws Failure if the helper has gone.
    void exchange();
    /// The bytes of the answer to the oldest job, if it is complete; drop_answer() then ends it.
    /// @throws Failure if what came is no answer to it.
    std::optional<std::span<const std::byte>> answer() const;
    void drop_answer();
    /// How long the oldest job has waited for its answer.
    std::chrono::steady_clock::duration waiting() const;

    /// Ends the process. True if it had crashed by itself, rather than being killed or giving up.
    bool end();

private:
    void send_some();
    void receive_some();

    pid_t m_process = -1;
    int m_descriptor = -1;
    WireBytes m_outgoing;
    std::size_t m_sent = 0;
    WireBytes m_incoming;
    std::deque<std::uint64_t> m_jobs;
    std::chrono::steady_clock::time_point m_waiting_since;
};

} // namespace tessavox::voice
