#include "platform/qt/timer_view.h"

#include "platform/failure.h"
#include "platform/qt/message_gate.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace tessavox {
namespace {

constexpr int resting_interval_ms = 50;

} // namespace

TimerView::TimerView(Timer& control, MessageGate& gate)
    : m_control(&control)
    , m_gate(gate)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { due(); });
    control.set_view(this);
    control_changed();
}

void TimerView::control_changed()
{
    const int interval = m_control->Resting
        ? std::max(m_control->Interval.get(), resting_interval_ms)
        : m_control->Interval.get();
    if (m_timer.interval() != interval)
        m_timer.setInterval(interval);
    if (m_control->Enabled && !m_timer.isActive())
        m_timer.start();
    if (!m_control->Enabled)
        m_timer.stop();
}

void TimerView::detach()
{
    m_timer.stop();
    m_control = nullptr;
}

void TimerView::due()
{
    if (!m_gate.is_shut() && !m_waits)
        tick();
    else if (!std::exchange(m_waits, true))
        m_gate.post([view = QPointer(this)] {
            if (!view)
                return;
            view->m_waits = false;
            view->tick();
        });
}

void TimerView::tick()
{
    if (!m_control || std::exchange(m_is_ticking, true))
        return;
    const QPointer<TimerView> alive(this);
    attempt([this] { m_control->tick(); });
    if (alive)
        m_is_ticking = false;
}

} // namespace tessavox
