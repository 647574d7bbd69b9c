#include "platform/qt/message_gate.h"

#include "platform/failure.h"

#include <QApplication>
#include <QWidget>

#include <utility>

namespace tessavox {

void MessageGate::post(std::function<void()> call)
{
    QMetaObject::invokeMethod(
        this, [this, call = std::move(call)]() mutable { arrived(std::move(call)); },
        Qt::QueuedConnection);
}

bool MessageGate::lets_user_at(const QWidget& widget) const
{
    const QWidget* modal = QApplication::activeModalWidget();
    return !is_shut() && (!modal || modal == &widget || modal->isAncestorOf(&widget));
}

// Later calls line up after those that wait, also when they come before the waiting ones have run.
void MessageGate::arrived(std::function<void()> call)
{
    m_waiting.push_back(std::move(call));
    run_waiting();
}

// The handler that blocked the program is still running, so the calls wait for the message loop.
void MessageGate::open()
{
    --m_shut;
    QMetaObject::invokeMethod(
        this, [this] { run_waiting(); }, Qt::QueuedConnection);
}

// A call that asks the user something runs the message loop, and with it the calls after it.
void MessageGate::run_waiting()
{
    while (!is_shut() && !m_waiting.empty()) {
        const auto call = std::move(m_waiting.front());
        m_waiting.pop_front();
        attempt(call);
    }
}

} // namespace tessavox
