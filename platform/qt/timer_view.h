// The clock behind a timer of a form.
#pragma once

#include "platform/controls/timer.h"

#include <QObject>
#include <QTimer>

namespace tessavox {

/// Ticks between events, and neither while a handler of any timer runs nor while a modal window is
/// open, so that no tick comes upon half-done work.
class TimerView : public QObject, public ControlView {
public:
    explicit TimerView(Timer& control);
    void control_changed() override;
    void detach();

private:
    void tick();

    Timer* m_control;
    QTimer m_timer;
};

} // namespace tessavox
