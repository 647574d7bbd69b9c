// Holds back what the program has posted to itself, and refuses what the user does, while a command
// blocks it.
#pragma once

#include <QObject>

#include <deque>
#include <functional>

class QWidget;

namespace tessavox {

/// Must live longer than every thread that posts, and belongs to the interface thread.
class MessageGate : public QObject {
public:
    /// Runs `call` in the message loop of the interface thread, each after those that were posted
    /// before it, and steps over its Failure. Any thread may post. While the gate is shut, calls
    /// wait.
    void post(std::function<void()> call);
    bool is_shut() const { return m_shut > 0; }
    /// Whether the user may do something to `widget` now: no command blocks the program, and no
    /// modal window that it isn't part of waits for an answer. The toolkit keeps mouse and keys
    /// away by itself, but assistive technologies reach every control.
    bool lets_user_at(const QWidget& widget) const;

    /// Shuts the gate for as long as it lives.
    class Shut {
    public:
        explicit Shut(MessageGate& gate)
            : m_gate(gate)
        {
            ++m_gate.m_shut;
        }
        ~Shut() { m_gate.open(); }
        Shut(const Shut&) = delete;
        Shut& operator=(const Shut&) = delete;

    private:
        MessageGate& m_gate;
    };

private:
    void arrived(std::function<void()> call);
    void open();
    void run_waiting();

    std::deque<std::function<void()>> m_waiting;
    int m_shut = 0;
};

} // namespace tessavox
