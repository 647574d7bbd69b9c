// A window as the program's logic sees it: an ordered list of named controls, and a life from its
// load to its unload.
#pragma once

#include "platform/controls/control.h"
#include "platform/form_window.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tessavox {

class Forms;

enum class FormKind {
    dialog, // a window of fixed size by itself
    tool_window, // the same, which can be minimised
    mdi_parent, // holds the documents
    mdi_child, // lies in the mdi_parent
};

enum class WindowState { normal = 0, minimised = 1, maximised = 2 };

class Form : public std::enable_shared_from_this<Form> {
public:
    /// `width` and `height` are the client area by design, in twips.
    Form(Forms& forms, std::string name, FormKind kind, double width, double height);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return m_name; }
    FormKind kind() const { return m_kind; }
    /// In the order in which they were made, which is the order of the tab key too.
    std::span<Control* const> controls() const { return m_controls; }

    Property<std::string> Caption;
    Property<std::string> Tag;
    Property<bool> Visible;
    Property<WindowState> window_state;
    /// Outer place and size in twips; the platform may fit them to the screen.
    Property<double> Left;
    Property<double> Top;
    Property<double> Width;
    Property<double> Height;
    /// The client area in twips, as it is now. Of the parent of documents: the area they lie in.
    double ScaleWidth() const { return m_scale_width; }
    double ScaleHeight() const { return m_scale_height; }

    /// Makes the window and runs Form_Load, unless it is loaded already. A child is shown and
    /// becomes the active one right after.
    void Load();
    bool is_loaded() const { return m_window != nullptr; }
    /// Loads if need be, then shows.
    void Show();
    /// The same for a window that stays above another one, and comes up in its middle.
    void Show(Form& owner);
    Form* owner() const { return m_owner; }
    void Hide() { Visible = false; }
    /// Asks Form_Unload, and takes the window away unless that cancels. Children are asked first,
    /// in the order of their loads, and one that cancels stops it all; meanwhile no child becomes
    /// active because another one goes. Returns whether it is gone.
    bool Unload();

    /// @throws Failure while the form isn't loaded.
    FormWindow& window() const;

    // Called by the platform's window ---------------------------------------------------------
    /// The client area has changed: keeps it, and runs Form_Resize.
    void client_resized(double width, double height);
    /// The user made this child the active one, or the window system did. Doesn't count while the
    /// parent is being unloaded.
    void user_activated();
    /// The window stands there now, whoever moved it. Twips, its frame included.
    void placed(double left, double top, double width, double height);
    /// The left button is 1, the right one 2. Twips, relative to the client area.
    void user_pressed_mouse(int button, float x, float y) { Form_MouseDown(button, x, y); }
    /// `buttons` are those held, added up.
    void user_moved_mouse(int buttons, float x, float y) { Form_MouseMove(buttons, x, y); }
    /// The user, or the window manager, changed the window's state.
    void user_changed_state(WindowState state);
    /// The user wants it closed. The FormWindow may be destroyed inside. Returns whether it is
    /// gone.
    bool user_closed() { return Unload(); }

    /// Draws the form's own properties.
    void set_view(ControlView* view) { m_view = view; }

protected:
    virtual void Form_Load() { }
    virtual void Form_Activate() { }
    virtual void Form_Resize() { }
    /// On no control of the form, which take the mouse for themselves.
    virtual void Form_MouseDown(int, float, float) { }
    virtual void Form_MouseMove(int, float, float) { }
    /// Setting `Cancel` keeps the window.
    virtual void Form_Unload(bool& Cancel) { static_cast<void>(Cancel); }

private:
    friend class Control;
    friend class Forms;
    void add(Control& control) { m_controls.push_back(&control); }
    void announce();

    Forms& m_forms;
    std::string m_name;
    FormKind m_kind;
    std::vector<Control*> m_controls;
    double m_scale_width;
    double m_scale_height;
    Form* m_owner = nullptr;
    ControlView* m_view = nullptr;
    std::unique_ptr<FormWindow> m_window;
};

/// All forms that are loaded, in the order of their loads, and which child is the active one.
class Forms {
public:
    /// `post` runs a call after the present handler has ended; `all_unloaded` runs when the last
    /// form has gone.
    using Post = std::function<void(std::function<void()>)>;
    Forms(FormWindows& windows, Post post, Handler all_unloaded);

    const std::vector<std::shared_ptr<Form>>& loaded() const { return m_loaded; }
    /// The active child, or null.
    Form* active_child() const { return m_active; }
    /// Makes a loaded child the active one and runs its Form_Activate, unless it is that already.
    /// Until the parent of documents is shown for the first time nobody sees the child, and its
    /// Form_Activate waits for that.
    void activate(Form& child);

private:
    friend class Form;
    void loaded(Form& form);
    void unloaded(Form& form);
    bool unload_children();
    bool is_parent_awaited() const;
    void parent_shown();

    FormWindows& m_windows;
    Post m_post;
    Handler m_all_unloaded;
    std::vector<std::shared_ptr<Form>> m_loaded;
    Form* m_active = nullptr;
    bool m_activation_waits = false;
    bool m_parent_was_shown = false;
    bool m_parent_unloads = false;
};

} // namespace tessavox
