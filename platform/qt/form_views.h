// The widgets of a form, built from its list of controls.
#pragma once

#include "platform/qt/control_view.h"

#include <QRect>

#include <unordered_map>
#include <vector>

namespace tessavox {

class Form;
class MessageGate;

/// Every control but menus, tool bars and the status bar, which belong to the frame of a window.
class FormViews {
public:
    /// Makes the widgets on `canvas`. The tab key goes through them in the order of the controls.
    /// What the user does to them goes through `gate`.
    FormViews(Form& form, const MessageGate& gate, QWidget& canvas);

    void redraw_all();
    /// Tells assistive technologies what each control is called. A list or bar takes the name of
    /// the label to its left.
    void name_all();
    void detach();
    /// Null if the control has no widget here.
    WidgetView* view_of(const Control& control) const;
    /// What the controls that keep their design size take up on the canvas, pixels from its corner.
    /// Panes, which stretch, don't count, nor does what is hidden.
    QSize fixed_extent() const;

private:
    WidgetView& build(Control& control);
    void set_tab_order() const;

    Form& m_form;
    const MessageGate& m_gate;
    QWidget& m_canvas;
    std::vector<std::unique_ptr<WidgetView>> m_views;
    std::unordered_map<const Control*, WidgetView*> m_view_of;
};

} // namespace tessavox
