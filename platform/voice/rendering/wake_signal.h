// What wakes a thread that waits for descriptors.
#pragma once

#include "platform/failure.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace tessavox::voice {

/// Any thread may call it.
class WakeSignal {
public:
    /// @throws Failure if the process has no descriptor left.
    WakeSignal()
        : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        if (m_descriptor < 0)
            throw Failure("no descriptor to be woken by");
    }
    ~WakeSignal() { close(m_descriptor); }
    WakeSignal(const WakeSignal&) = delete;
    WakeSignal& operator=(const WakeSignal&) = delete;

    /// Readable from raise() to clear(). Neither can fail in a way that matters: a counter that is
    /// full or empty is as wanted.
    int descriptor() const { return m_descriptor; }
    void raise() { eventfd_write(m_descriptor, 1); }
    void clear()
    {
        eventfd_t count = 0;
        eventfd_read(m_descriptor, &count);
    }

private:
    int m_descriptor;
};

} // namespace tessavox::voice
