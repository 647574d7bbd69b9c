// Widgets are owned by the widget that they lie in.
#pragma once

#include <memory>
#include <utility>

namespace tessavox {

/// A new widget (or other object with a parent), whose last argument is the parent that owns it.
template <class Widget, class... Arguments> Widget& make_child(Arguments&&... arguments)
{
    return *std::make_unique<Widget>(std::forward<Arguments>(arguments)...).release();
}

} // namespace tessavox
