#include "platform/failure.h"
#include "platform/voice/sound/pulse_sink.h"

#include <utility>

namespace tessavox::voice {

namespace {

constexpr std::chrono::seconds patience{ 1 };

class PulseServer final : public SoundServer {
public:
    explicit PulseServer(std::string application_name)
        : m_application_name(std::move(application_name))
    {
    }

    std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string& output, std::function<void()> wake) override
    {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        auto connection = current();
        // That a server went away is noticed at times only when it is used: then try its successor.
        const bool used_before = connection->state() == PulseConnection::State::ready;
        try {
            return open_on(connection, format, output, wake, deadline);
        } catch (const Failure&) {
            if (std::chrono::steady_clock::now() >= deadline)
                give_up(connection);
            if (!used_before || connection->state() != PulseConnection::State::lost)
                throw;
        }
        connection = current();
        return open_on(connection, format, output, wake, deadline);
    }

    std::vector<Output> outputs() override
    {
        std::vector<Output> known;
        attempt([&] {
            m_outputs_wanted = true;
            known = current()->outputs();
        });
        return known;
    }

private:
    static std::unique_ptr<AudioSink> open_on(const std::shared_ptr<PulseConnection>& connection,
        PcmFormat format, const std::string& output, const std::function<void()>& wake,
        PulseConnection::Deadline deadline)
    {
        if (connection->wait_until_connected(deadline) != PulseConnection::State::ready)
            throw Failure("the sound server does not answer");
        auto sink = std::make_unique<PulseSink>(connection, format, output, wake);
        sink->wait_until_open(deadline);
        return sink;
    }

    /// The connection, or a new one if it is lost.
    std::shared_ptr<PulseConnection> current()
    {
        const std::lock_guard lock(m_mutex);
        if (!m_connection || m_connection->state() == PulseConnection::State::lost) {
            m_connection.reset();
            m_connection = std::make_shared<PulseConnection>(m_application_name);
        }
        if (m_outputs_wanted)
            m_connection->watch_outputs();
        return m_connection;
    }

    /// A server that does not answer is not asked again: the next open() looks for a better one.
    void give_up(const std::shared_ptr<PulseConnection>& connection)
    {
        const std::lock_guard lock(m_mutex);
        if (m_connection == connection)
            m_connection.reset();
    }

    std::string m_application_name;
    std::atomic<bool> m_outputs_wanted = false;
    std::mutex m_mutex;
    std::shared_ptr<PulseConnection> m_connection;
};

} // namespace

std::unique_ptr<SoundServer> make_pulse_server(const std::string& application_name)
{
    return std::make_unique<PulseServer>(application_name);
}

} // namespace tessavox::voice
