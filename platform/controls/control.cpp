#include "platform/controls/control.h"

#include "platform/controls/form.h"
#include "platform/failure.h"

namespace tessavox {

Control::Control(Form& form, std::string name, std::string type_name)
    : Enabled(true, announcer())
    , Visible(true, announcer())
    , Caption({}, announcer())
    , Tag({}, announcer())
    , ToolTipText({}, announcer())
    , m_form(form)
    , m_name(std::move(name))
    , m_type_name(std::move(type_name))
{
    form.add(*this);
}

Control::~Control() = default;

void Control::Move(double left, double top, double width, double height)
{
    if (width < 0 || height < 0)
        throw Failure(m_name + " can't have a negative size");
    if (left == m_left && top == m_top && width == m_width && height == m_height)
        return;
    m_left = left;
    m_top = top;
    m_width = width;
    m_height = height;
    announce();
}

bool Control::is_shown() const
{
    for (const Control* control = this; control; control = control->container()) {
        if (!control->Visible)
            return false;
    }
    return true;
}

void Control::SetFocus()
{
    if (!is_shown() || !Enabled)
        throw Failure(m_name + " can't take the focus");
    m_form.window().focus(*this);
}

} // namespace tessavox
