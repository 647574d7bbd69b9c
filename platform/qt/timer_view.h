// The clock behind a timer of a form.
#pragma once

#include "platform/controls/timer.h"

#include <QObject>
#include <QTimer>

namespace tessavox {

class MessageGate;

/// Ticks between events, also those of a window that a handler has opened to ask something. A tick
/// that finds the gate shut waits for it, and those after it are dropped until then.
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
    bool m_is_ticking = false;
    QTimer m_timer;
};

} // namespace tessavox
