// The clock behind a timer of a form.
#pragma once

#include "platform/controls/timer.h"

#include <QObject>
#include <QTimer>

namespace tessavox {

class MessageGate;

/// Ticks between events, and neither while a handler of any timer runs nor while a modal window is
/// open, so that no tick comes upon half-done work. A tick that finds the gate shut waits for it,
/// and those after it are dropped until then.
class TimerView : public QObject, public ControlView {
public:
    TimerView(Timer& control, MessageGate& gate);
    void control_changed() override;
    void detach();

private:
    void due();
    void tick();

    Timer* m_control;
    MessageGate& m_gate;
    bool m_waits = false;
    QTimer m_timer;
};

} // namespace tessavox
