#include "platform/voice/rendering/helper_process.h"

#include "platform/argument_pointers.h"
#include "platform/failure.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

class SpawnSettings {
public:
    explicit SpawnSettings(int descriptor)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, descriptor, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, descriptor, STDOUT_FILENO);
        posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        sigset_t usual;
        sigemptyset(&usual);
        for (const int signal : { SIGINT, SIGTERM, SIGPIPE, SIGCHLD, SIGHUP })
            sigaddset(&usual, signal);
        posix_spawnattr_setsigdefault(&m_attributes, &usual);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    const posix_spawn_file_actions_t* actions() const { return &m_actions; }
    const posix_spawnattr_t* attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

} // namespace

HelperProcess::HelperProcess(std::vector<std::string> command)
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw Failure("no socket for a helper");
    m_descriptor = Descriptor(ends[0]);
    const Descriptor helpers_end(ends[1]);
    fcntl(descriptor(), F_SETFL, O_NONBLOCK);
    const std::vector<char*> arguments = argument_pointers(command);
    const SpawnSettings settings(ends[1]);
    const int error = posix_spawn(&m_process, arguments.front(), settings.actions(),
        settings.attributes(), arguments.data(), environ);
    if (error != 0)
        throw Failure("can't start " + command.front() + ": " + std::strerror(error));
}

HelperProcess::~HelperProcess()
{
    end();
}

void HelperProcess::assign(std::uint64_t job, const WireRequest& request)
{
    if (m_jobs.empty())
        m_waiting_since = std::chrono::steady_clock::now();
    m_jobs.push_back(job);
    append_request(m_outgoing, job, request);
}

void HelperProcess::drop_all()
{
    if (!m_jobs.empty())
        append_drop(m_outgoing, m_jobs.back());
}

void HelperProcess::exchange()
{
    send_some();
    receive_some();
}

void HelperProcess::send_some()
{
    while (wants_to_send()) {
        const ssize_t sent = send(descriptor(), m_outgoing.data() + m_sent,
            m_outgoing.size() - m_sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return;
        if (sent < 0)
            throw Failure("a helper takes no more requests");
        m_sent += static_cast<std::size_t>(sent);
    }
    m_outgoing.clear();
    m_sent = 0;
}

void HelperProcess::receive_some()
{
    constexpr std::size_t piece = 64 << 10;
    for (;;) {
        const std::size_t before = m_incoming.size();
        m_incoming.resize(before + piece);
        const ssize_t got = recv(descriptor(), m_incoming.data() + before, piece, MSG_DONTWAIT);
        m_incoming.resize(before + static_cast<std::size_t>(got > 0 ? got : 0));
        if (got > 0) {
            // Whoever sends more than was asked for is stopped here, before it fills the memory.
            if (m_jobs.empty()
                || (m_incoming.size() > sizeof(WireHeader) && !peek_header(m_incoming)))
                throw Failure("a helper speaks without being asked");
            if (m_incoming.size() >= sizeof(WireHeader) + longest_message)
                throw Failure("a helper answers too much");
            if (static_cast<std::size_t>(got) < piece)
                return;
            if (answer())
                return;
            continue;
        }
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return;
        throw Failure("a helper has gone");
    }
}

std::optional<std::span<const std::byte>> HelperProcess::answer() const
{
    const auto header = peek_header(m_incoming);
    if (!header)
        return std::nullopt;
    if (m_jobs.empty() || header->job != m_jobs.front())
        throw Failure("a helper answers what it wasn't asked");
    if (m_incoming.size() - sizeof *header < header->length)
        return std::nullopt;
    return std::span(m_incoming).subspan(sizeof *header, header->length);
}

void HelperProcess::drop_answer()
{
    const auto header = peek_header(m_incoming);
    m_incoming.erase(m_incoming.begin(),
        m_incoming.begin() + static_cast<std::ptrdiff_t>(sizeof *header + header->length));
    m_jobs.pop_front();
    m_waiting_since = std::chrono::steady_clock::now();
}

void HelperProcess::end()
{
    // It may be dead already: then this reaches nobody, as its number is kept until it is waited
    // for.
    kill(m_process, SIGKILL);
    while (waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) { }
}

} // namespace tessavox::voice
