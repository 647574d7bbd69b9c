// The window that the platform gives a form.
#pragma once

#include <memory>

namespace tessavox {

class Control;
class Form;

/// Lives from the load of its form to its unload. It draws the form and its controls, watches them
/// for changes (Form::set_view, Control::set_view) and reports what the user does to them.
class FormWindow {
public:
    virtual ~FormWindow() = default;
    /// Gives the control the keyboard focus. @throws Failure if the window isn't shown.
    virtual void focus(Control& control) = 0;
    /// Makes it the front window, or the active child.
    virtual void bring_forward() = 0;
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
