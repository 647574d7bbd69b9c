#include "platform/qt/end_signals.h"

#include "platform/failure.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/message_gate.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <QThread>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tessavox {
namespace {

constexpr int signals_to_end[] = { SIGTERM, SIGINT, SIGHUP };

// A signal handler can reach nothing else.
volatile std::sig_atomic_t write_end = -1;

void wake_message_loop(int)
{
    const int kept = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(write_end, &byte, 1);
    errno = kept;
}

void handle_signals(void (*handler)(int))
{
    struct sigaction action { };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : signals_to_end)
        ::sigaction(signal, &action, nullptr);
}

} // namespace

EndSignals::EndSignals(const MessageGate& gate, std::function<void()> end)
    : m_gate(gate)
    , m_end(std::move(end))
{
    std::array<int, 2> ends;
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw Failure("no pipe for signals");
    m_read_end = ends[0];
    write_end = ends[1];
    auto& notifier = make_child<QSocketNotifier>(m_read_end, QSocketNotifier::Read, this);
    connect(&notifier, &QSocketNotifier::activated, this, [this] { take_signals(); });
    // Only the loop itself knows when a handler has returned to it. While one runs the loop may
    // rest: a call posted then would wake it for nothing, again and again.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
        [this] {
            if (may_end())
                QMetaObject::invokeMethod(
                    this, [this] { end_if_wanted(); }, Qt::QueuedConnection);
        });
    handle_signals(wake_message_loop);
}

EndSignals::~EndSignals()
{
    handle_signals(SIG_DFL);
    ::close(write_end);
    ::close(m_read_end);
}

void EndSignals::take_signals()
{
    std::array<char, 16> bytes;
    while (::read(m_read_end, bytes.data(), bytes.size()) > 0)
        m_is_wanted = !m_is_ending;
}

bool EndSignals::may_end() const
{
    const bool is_between_handlers = QThread::currentThread()->loopLevel() == 1;
    return m_is_wanted && is_between_handlers && !m_gate.is_shut();
}

void EndSignals::end_if_wanted()
{
    if (!may_end())
        return;
    m_is_wanted = false;
    m_is_ending = true;
    m_end();
    take_signals();
    m_is_ending = false;
}

} // namespace tessavox
