// What wakes a thread that waits for descriptors.
#pragma once

namespace tessavox::voice {

/// Any thread may call it.
class WakeSignal {
public:
    /// @throws Failure if the process has no descriptor left.
    WakeSignal();
    ~WakeSignal();
    WakeSignal(const WakeSignal&) = delete;
    WakeSignal& operator=(const WakeSignal&) = delete;

    /// Readable from raise() to clear().
    int descriptor() const { return m_descriptor; }
    void raise();
    void clear();

private:
    int m_descriptor;
};

} // namespace tessavox::voice
