#include "platform/controls/form.h"

#include "platform/failure.h"

#include <algorithm>
#include <utility>

namespace tessavox {

Form::Form(Forms& forms, std::string name, FormKind kind, double width, double height)
    : Caption({}, [this] { announce(); })
    , Tag({}, nullptr)
    , Visible(false,
          [this] {
              announce();
              if (m_kind == FormKind::mdi_parent && Visible)
                  m_forms.parent_shown();
          })
    , window_state(WindowState::normal,
          [this] {
              announce();
              Form_Resize();
          })
    , Left(0, [this] { announce(); })
    , Top(0, [this] { announce(); })
    , Width(width, [this] { announce(); })
    , Height(height, [this] { announce(); })
    , m_forms(forms)
    , m_name(std::move(name))
    , m_kind(kind)
    , m_scale_width(width)
    , m_scale_height(height)
{
}

Form::~Form() = default;

void Form::announce()
{
    if (m_view)
        m_view->control_changed();
}

FormWindow& Form::window() const
{
    if (!m_window)
        throw Failure(m_name + " isn't loaded");
    return *m_window;
}

void Form::Load()
{
    if (m_window)
        return;
    Left = 0; // until something else is asked for, the platform chooses the place
    Top = 0;
    m_window = m_forms.m_windows.open(*this);
    m_forms.loaded(*this);
    Form_Load();
    if (m_kind == FormKind::mdi_child) {
        Visible = true;
        m_forms.activate(*this);
    }
}

void Form::Show()
{
    Load();
    Visible = true;
    if (m_window)
        m_window->bring_forward();
}

void Form::Show(Form& owner)
{
    m_owner = &owner;
    Show();
}

bool Form::Unload()
{
    if (!m_window)
        return true;
    const std::shared_ptr<Form> alive = shared_from_this();
    if (m_kind == FormKind::mdi_parent && !m_forms.unload_children())
        return false;
    bool Cancel = false;
    Form_Unload(Cancel);
    if (Cancel)
        return false;
    if (!m_window) // its own handler has unloaded it already
        return true;
    Visible = false;
    m_view = nullptr;
    for (Control* control : m_controls)
        control->set_view(nullptr);
    m_forms.m_windows.close(std::move(m_window));
    m_forms.unloaded(*this);
    return true;
}

void Form::client_resized(double width, double height)
{
    m_scale_width = width;
    m_scale_height = height;
    Form_Resize();
}

void Form::placed(double left, double top, double width, double height)
{
    ControlView* const view = std::exchange(m_view, nullptr); // it knows
    Left = left;
    Top = top;
    Width = width;
    Height = height;
    m_view = view;
}

void Form::user_activated()
{
    if (m_window && !m_forms.m_parent_unloads)
        m_forms.activate(*this);
}

void Form::user_changed_state(WindowState state)
{
    window_state = state;
}

Forms::Forms(FormWindows& windows, Post post, Handler all_unloaded)
    : m_windows(windows)
    , m_post(std::move(post))
    , m_all_unloaded(std::move(all_unloaded))
{
}

void Forms::activate(Form& child)
{
    if (m_active == &child)
        return;
    m_active = &child;
    child.window().bring_forward();
    if (m_active != &child)
        return;
    m_activation_waits = is_parent_awaited();
    if (!m_activation_waits)
        child.Form_Activate();
}

bool Forms::is_parent_awaited() const
{
    return !m_parent_was_shown
        && std::any_of(m_loaded.begin(), m_loaded.end(),
            [](const auto& form) { return form->kind() == FormKind::mdi_parent; });
}

void Forms::parent_shown()
{
    m_parent_was_shown = true;
    if (std::exchange(m_activation_waits, false) && m_active)
        m_active->Form_Activate();
}

bool Forms::unload_children()
{
    m_parent_unloads = true;
    const auto forms = m_loaded;
    const bool all_gone = std::all_of(forms.begin(), forms.end(),
        [](const auto& form) { return form->kind() != FormKind::mdi_child || form->Unload(); });
    m_parent_unloads = false;
    return all_gone;
}

void Forms::loaded(Form& form)
{
    m_loaded.push_back(form.shared_from_this());
}

void Forms::unloaded(Form& form)
{
    const auto found = std::find_if(
        m_loaded.begin(), m_loaded.end(), [&](const auto& kept) { return kept.get() == &form; });
    if (found == m_loaded.end())
        return;
    // The handler that asked for this may belong to one of the form's own controls, so the form has
    // to stay until that handler has returned.
    m_post([gone = *found] {});
    m_loaded.erase(found);
    if (m_active == &form) {
        m_active = nullptr;
        const auto next = std::find_if(m_loaded.rbegin(), m_loaded.rend(),
            [](const auto& kept) { return kept->kind() == FormKind::mdi_child; });
        if (next != m_loaded.rend() && !m_parent_unloads)
            activate(**next);
    }
    if (m_loaded.empty() && m_all_unloaded)
        m_all_unloaded();
}

} // namespace tessavox
