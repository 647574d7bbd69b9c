// The signals by which the system asks a program to end.
#pragma once

#include <QObject>

#include <functional>

namespace tessavox {

/// Runs `end` on the interface thread after SIGTERM, SIGINT or SIGHUP, in the message loop, where
/// it may close windows and write files. There is at most one of these.
class EndSignals : public QObject {
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals() override;

private:
    int m_read_end = -1;
};

} // namespace tessavox
