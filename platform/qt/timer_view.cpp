#include "platform/qt/timer_view.h"

#include "platform/failure.h"
#include "platform/qt/message_gate.h"

#include <QApplication>
#include <QPointer>

#include <utility>

namespace tessavox {

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
    if (m_timer.interval() != m_control->Interval)
        m_timer.setInterval(m_control->Interval);
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

// A handler that asks the user something does so in a modal window.
void TimerView::tick()
{
    if (m_control && !QApplication::activeModalWidget())
        attempt([this] { m_control->tick(); });
}

} // namespace tessavox
