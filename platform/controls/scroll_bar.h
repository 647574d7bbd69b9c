// A bar whose thumb stands for a number.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

struct ScrollBarRange {
    int Min;
    int Max;
    int SmallChange; // a click on an arrow, an arrow key
    int LargeChange; // a click in the shaft, a page key
};

class ScrollBar : public Control {
public:
    ScrollBar(Form& form, std::string name, ScrollBarRange range);

    const ScrollBarRange& range() const { return m_range; }
    /// @throws Failure out of range; nothing is clamped.
    Property<int> Value;
    /// Runs at each change of the value, whoever makes it.
    Handler Change;
    /// Runs while the thumb is dragged and at no other time: neither a value set by code nor a
    /// click on an arrow or in the shaft gets here.
    Handler Scroll;

    /// The user drags the thumb over `value`.
    void user_drag(int value);
    /// The user moved it by arrow, shaft, wheel or key. Clamped to the range.
    void user_step(int value);

private:
    void keep(int value);
    ScrollBarRange m_range;
};

} // namespace tessavox
