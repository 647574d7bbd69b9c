// The window that the platform gives a form.
#pragma once

#include <cstdint>
#include <memory>

namespace tessavox {

class Control;
class Form;
class MenuItem;

/// Pixels.
struct PixelBox {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    friend bool operator==(const PixelBox&, const PixelBox&) = default;
};

enum class Stacking { topmost = -1, not_topmost = -2 };

/// Lives from the load of its form to its unload. It draws the form and its controls, watches them
/// for changes (Form::set_view, Control::set_view) and reports what the user does to them.
class FormWindow {
public:
    virtual ~FormWindow() = default;
    /// Gives the control the keyboard focus. @throws Failure if the window isn't shown.
    virtual void focus(Control& control) = 0;
    /// Makes it the front window, or the active child.
    virtual void bring_forward() = 0;
    /// Moves, sizes and stacks the window at once.
    virtual void SetWindowPos(Stacking stacking, const PixelBox& box) = 0;
    /// Shows a menu of the form at the pointer. @throws Failure if it has no such menu.
    virtual void PopupMenu(const MenuItem& menu) = 0;
};

class FormWindows {
public:
    virtual ~FormWindows() = default;
    /// A window, not shown yet, for a form that is being loaded. Its client size is reported by
    /// Form::client_resized when it is first shown and at each change.
    virtual std::unique_ptr<FormWindow> open(Form& form) = 0;
    /// The window of an unloaded form is handed back, so that it can go when it is safe.
    virtual void close(std::unique_ptr<FormWindow> window) = 0;
};

} // namespace tessavox
