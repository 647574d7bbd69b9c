#include "platform/voice/rendering/wake_signal.h"

#include "platform/failure.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace tessavox::voice {

WakeSignal::WakeSignal()
    : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_descriptor < 0)
        throw Failure("no descriptor to be woken by");
}

WakeSignal::~WakeSignal()
{
    close(m_descriptor);
}

// Neither can fail in a way that matters: a counter that is full or empty is as wanted.
void WakeSignal::raise()
{
    eventfd_write(m_descriptor, 1);
}

void WakeSignal::clear()
{
    eventfd_t count = 0;
    eventfd_read(m_descriptor, &count);
}

} // namespace tessavox::voice
