#include "platform/qt/form_views.h"

#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/menu_item.h"
#include "platform/controls/scroll_bar.h"
#include "platform/controls/text_box.h"
#include "platform/controls/timer.h"
#include "platform/qt/text_conversion.h"

#include <QLabel>
#include <QWidget>

#include <cmath>

namespace tessavox {
namespace {

/// A label belongs to the control whose top is at most this far from its own.
constexpr double same_row_twips = 90;

template <class... Kinds> bool is_any_of(const Control& control)
{
    return (dynamic_cast<const Kinds*>(&control) || ...);
}

bool has_no_widget_here(const Control& control)
{
    return is_any_of<MenuItem, ToolBar, StatusBar, Timer>(control);
}

bool keeps_its_size(const Control& control)
{
    return is_any_of<CommandButton, CheckBox, ComboBox, ScrollBar, TextBox, Label>(control);
}

const Control* label_of(const Form& form, const Control& control)
{
    const Control* nearest = nullptr;
    for (const Control* other : form.controls()) {
        const bool beside = is_any_of<Label>(*other) && other->container() == control.container()
            && std::abs(other->Top() - control.Top()) <= same_row_twips
            && other->Left() < control.Left();
        if (beside && (!nearest || other->Left() > nearest->Left()))
            nearest = other;
    }
    return nearest;
}

} // namespace

FormViews::FormViews(Form& form, const MessageGate& gate, QWidget& canvas)
    : m_form(form)
    , m_gate(gate)
    , m_canvas(canvas)
{
    for (Control* control : form.controls()) {
        if (!has_no_widget_here(*control))
            build(*control);
    }
    set_tab_order();
    redraw_all();
}

WidgetView& FormViews::build(Control& control)
{
    if (WidgetView* known = view_of(control))
        return *known;
    QWidget& parent = control.container() ? build(*control.container()).widget() : m_canvas;
    m_views.push_back(make_widget_view(control, parent));
    m_views.back()->report_through(m_gate);
    m_view_of[&control] = m_views.back().get();
    return *m_views.back();
}

void FormViews::set_tab_order() const
{
    QWidget* before = nullptr;
    for (const Control* control : m_form.controls()) {
        const WidgetView* view = view_of(*control);
        if (!view || view->focus_widget().focusPolicy() == Qt::NoFocus)
            continue;
        if (before)
            QWidget::setTabOrder(before, &view->focus_widget());
        before = &view->focus_widget();
    }
}

void FormViews::redraw_all()
{
    for (const auto& view : m_views)
        view->control_changed();
}

void FormViews::name_all()
{
    for (const auto& [control, view] : m_view_of) {
        const Control* label = is_any_of<ComboBox, ScrollBar, TextBox>(*control)
            ? label_of(m_form, *control)
            : nullptr;
        view->name_for_assistance(label ? to_qt(label->Caption).remove('&').trimmed() : QString());
        if (label) {
            if (auto* drawn = qobject_cast<QLabel*>(&view_of(*label)->widget()))
                drawn->setBuddy(&view->focus_widget());
            view_of(*label)->control_changed(); // it stands on the line of its buddy
        }
    }
}

void FormViews::detach()
{
    for (const auto& view : m_views)
        view->detach();
    m_view_of.clear();
}

WidgetView* FormViews::view_of(const Control& control) const
{
    const auto found = m_view_of.find(&control);
    return found == m_view_of.end() ? nullptr : found->second;
}

QSize FormViews::fixed_extent() const
{
    QSize extent;
    for (const auto& [control, view] : m_view_of) {
        if (!control->is_shown() || !keeps_its_size(*control))
            continue;
        const QWidget& widget = view->widget();
        const QRect place(widget.mapTo(&m_canvas, QPoint()), widget.size());
        const int across
            = m_canvas.isLeftToRight() ? place.x() + place.width() : m_canvas.width() - place.x();
        extent = extent.expandedTo({ across, place.y() + place.height() });
    }
    return extent;
}

} // namespace tessavox
