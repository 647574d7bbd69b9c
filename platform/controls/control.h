// What all controls of a form have in common. A control knows nothing of any toolkit: it holds its
// values, owns the rule by which its handlers run, and tells whoever draws it that it has changed.
#pragma once

#include "platform/controls/property.h"

#include <functional>
#include <string>

namespace tessavox {

class Form;

/// Draws one control. It is told of a change and then reads what it needs.
class ControlView {
public:
    virtual ~ControlView() = default;
    virtual void control_changed() = 0;
};

/// A handler of a form, run by its control. Empty where the form has none for that event.
using Handler = std::function<void()>;

class Control {
public:
    /// Adds itself to the end of the form's list. `type_name` is the exact name that texts are
    /// assigned by.
    Control(Form& form, std::string name, std::string type_name);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& name() const { return m_name; }
    const std::string& TypeName() const { return m_type_name; }
    Form& form() const { return m_form; }
    /// The control that this one lies in, or null for the form itself.
    Control* container() const { return m_container; }
    void set_container(Control* container) { m_container = container; }

    Property<bool> Enabled;
    Property<bool> Visible;
    Property<std::string> Caption;
    Property<std::string> Tag;
    Property<std::string> ToolTipText;

    /// Twips, relative to the container.
    double Left() const { return m_left; }
    double Top() const { return m_top; }
    double Width() const { return m_width; }
    double Height() const { return m_height; }
    /// @throws Failure if width or height is negative; the control then stays as it was.
    void Move(double left, double top, double width, double height);
    void set_Left(double left) { Move(left, m_top, m_width, m_height); }
    void set_Top(double top) { Move(m_left, top, m_width, m_height); }
    void set_Width(double width) { Move(m_left, m_top, width, m_height); }

    /// @throws Failure if the control can't take the focus now: it or its form isn't shown.
    void SetFocus();
    /// Whether it and all that it lies in are visible.
    bool is_shown() const;

    void set_view(ControlView* view) { m_view = view; }

protected:
    void announce()
    {
        if (m_view)
            m_view->control_changed();
    }
    /// For the constructors of further properties.
    std::function<void()> announcer()
    {
        return [this] { announce(); };
    }

private:
    Form& m_form;
    std::string m_name;
    std::string m_type_name;
    Control* m_container = nullptr;
    double m_left = 0;
    double m_top = 0;
    double m_width = 0;
    double m_height = 0;
    ControlView* m_view = nullptr;
};

} // namespace tessavox
