// Keeps the windows alive while a command blocks the program.
#pragma once

#include "platform/blocking_work.h"

namespace tessavox {

class MessageGate;

/// The small window is modal, and comes only for work that takes a moment.
class QtBlockingWork : public BlockingWork {
public:
    /// `gate` is what the program's calls and timers go through.
    explicit QtBlockingWork(MessageGate& gate)
        : m_gate(gate)
    {
    }
    /// Whether the system has asked the program to end, if that can be known.
    std::function<bool()> end_is_wanted;

    bool wait(const std::string& text, const std::function<bool()>& is_done,
        const std::function<double()>& share) override;

private:
    MessageGate& m_gate;
};

} // namespace tessavox
