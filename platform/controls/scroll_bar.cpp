#include "platform/controls/scroll_bar.h"

#include "platform/failure.h"

#include <algorithm>

namespace tessavox {

ScrollBar::ScrollBar(Form& form, std::string name, ScrollBarRange range)
    : Control(form, std::move(name), "HScrollBar")
    , Value(0, announcer(),
          [this](int wanted) {
              if (wanted < m_range.Min || wanted > m_range.Max)
                  throw Failure(this->name() + " can't take the value " + std::to_string(wanted));
              keep(wanted);
          })
    , m_range(range)
{
}

void ScrollBar::keep(int value)
{
    if (Value.store(std::clamp(value, m_range.Min, m_range.Max)) && Change)
        Change();
}

void ScrollBar::user_drag(int value)
{
    keep(value);
    if (Scroll)
        Scroll();
}

void ScrollBar::user_step(int value)
{
    keep(value);
}

} // namespace tessavox
