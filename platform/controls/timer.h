// A control that runs its handler again and again.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

/// Ticks from the load of its form on, as long as it is enabled, also while a window waits for an
/// answer. A tick that comes due while its handler runs is left out. Of those that come due while
/// the program is blocked, one waits.
class Timer : public Control {
public:
    Timer(Form& form, std::string name, int interval_ms)
        : Control(form, std::move(name), "Timer")
        , Interval(interval_ms, announcer())
        , Resting(false, announcer())
    {
    }
    /// Milliseconds; what the platform can't keep is as short as it can.
    Property<int> Interval;
    /// Whether ticks would do nothing for now. Then all are left out but one each 50 ms, lest what
    /// nobody gives notice of is missed.
    Property<bool> Resting;
    Handler Tick;

    /// The time has come. @throws Failure if the handler does.
    void tick()
    {
        if (Enabled && Tick)
            Tick();
    }
};

} // namespace tessavox
