// Spares assistive technologies what happens inside one step.
#pragma once

#include <QAccessible>

namespace tessavox {

/// As long as it lives, assistive technologies are told of no change. A new window is built, shown
/// and laid out under it: of each of its controls they would else hear half a dozen times, although
/// they read all of it anyway once they know that the window is there.
class QuietAssistance {
public:
    QuietAssistance()
        : m_before(QAccessible::installUpdateHandler([](QAccessibleEvent*) {}))
    {
    }
    ~QuietAssistance() { QAccessible::installUpdateHandler(m_before); }
    QuietAssistance(const QuietAssistance&) = delete;
    QuietAssistance& operator=(const QuietAssistance&) = delete;

private:
    QAccessible::UpdateHandler m_before;
};

} // namespace tessavox
