// The signals by which the system asks a program to end.
#pragma once

#include <QObject>

#include <functional>

namespace tessavox {

class MessageGate;

/// Runs `end` on the interface thread after SIGTERM, SIGINT or SIGHUP, in the message loop, where
/// it may close windows and write files. A handler that runs is waited for, also one that asks the
/// user something or blocks the program, which can ask whether it is waited for. Signals that come
/// while `end` runs ask for nothing more. There is at most one of these.
class EndSignals : public QObject {
public:
    EndSignals(const MessageGate& gate, std::function<void()> end);
    ~EndSignals() override;

    /// A signal has come, and `end` has not run yet.
    bool is_wanted() const { return m_is_wanted; }

private:
    bool may_end() const;
    void take_signals();
    void end_if_wanted();

    const MessageGate& m_gate;
    std::function<void()> m_end;
    int m_read_end = -1;
    bool m_is_wanted = false;
    bool m_is_ending = false;
};

} // namespace tessavox
