#include "platform/qt/control_view.h"

#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/containers.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/rich_text_box.h"
#include "platform/controls/scroll_bar.h"
#include "platform/controls/text_box.h"
#include "platform/controls/web_browser.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/twips.h"
#include "platform/qt/view_makers.h"

#include <QSignalBlocker>
#include <QWidget>

#include <algorithm>
#include <iterator>

namespace tessavox {
namespace {

/// Where a control is drawn. One that sticks out of its container, or of a window of fixed size,
/// ends at the edge, so that its text is fitted to what can be seen of it.
QRect place_of(const Control& control)
{
    double width = control.Width();
    double height = control.Height();
    if (const Control* container = control.container()) {
        const double room = container->Width() - control.Left();
        if (room > 0)
            width = std::min(width, room);
    } else if (control.form().kind() == FormKind::tool_window) {
        height = std::min(height, std::max(0.0, control.form().ScaleHeight() - control.Top()));
    }
    return to_pixels(control.Left(), control.Top(), width, height);
}

/// The same in a window that runs from right to left, where places count from the right edge.
QRect mirrored(const QRect& place, const QWidget& widget)
{
    const QWidget* parent = widget.parentWidget();
    if (!parent || parent->isLeftToRight())
        return place;
    return { parent->width() - place.x() - place.width(), place.y(), place.width(),
        place.height() };
}

using Maker = std::unique_ptr<WidgetView> (*)(Control&, QWidget&);

template <class Kind, std::unique_ptr<WidgetView> (*make)(Kind&, QWidget&)>
std::unique_ptr<WidgetView> make_if(Control& control, QWidget& parent)
{
    auto* of_kind = dynamic_cast<Kind*>(&control);
    return of_kind ? make(*of_kind, parent) : nullptr;
}

constexpr Maker makers[] = {
    make_if<CommandButton, view_command_button>,
    make_if<CheckBox, view_check_box>,
    make_if<Label, view_label>,
    make_if<Frame, view_frame>,
    make_if<ComboBox, view_combo_box>,
    make_if<ScrollBar, view_scroll_bar>,
    make_if<TextBox, view_text_box>,
    make_if<TabStrip, view_tab_strip>,
    make_if<RichTextBox, view_rich_text_box>,
    make_if<WebBrowser, view_web_browser>,
};

} // namespace

WidgetView::WidgetView(Control& control, QWidget& widget)
    : m_control(&control)
    , m_widget(widget)
{
    widget.setObjectName(to_qt(control.name()));
    control.set_view(this);
}

WidgetView::~WidgetView() = default;

void WidgetView::detach()
{
    m_control = nullptr;
}

void WidgetView::control_changed()
{
    if (!m_control)
        return;
    const QSignalBlocker quiet(m_widget);
    if (m_widget.window()->focusWidget() == &m_widget
        && !(m_control->Enabled && m_control->Visible))
        about_to_lose_focus();
    const QRect place = mirrored(place_of(*m_control), m_widget);
    if (m_widget.geometry() != place)
        m_widget.setGeometry(place);
    m_widget.setEnabled(m_control->Enabled);
    // What nobody can see must not be a stop of the tab key either.
    m_widget.setVisible(m_control->Visible && !(place.height() == 0 && m_control->Height() > 0));
    redraw();
    if (const QString shown = tip(); m_widget.toolTip() != shown)
        m_widget.setToolTip(shown);
    draw_name();
}

QString WidgetView::tip() const
{
    return to_qt(m_control->ToolTipText);
}

bool WidgetView::user_may_act() const
{
    return !m_gate || m_gate->lets_user_at(m_widget);
}

void WidgetView::name_for_assistance(const QString& label)
{
    m_label = label;
    if (m_control)
        draw_name();
}

void WidgetView::draw_name()
{
    const QString names[] = { to_qt(m_control->Caption).remove('&').trimmed(), m_label,
        to_qt(m_control->ToolTipText).trimmed() };
    const auto name = std::find_if(
        std::begin(names), std::end(names), [](const QString& one) { return !one.isEmpty(); });
    if (name != std::end(names) && focus_widget().accessibleName() != *name)
        focus_widget().setAccessibleName(*name);
    // The toolkit would describe it by its tool tip, and so say its name or text once more.
    const QString own = to_qt(m_control->ToolTipText);
    if (tip() != own && m_widget.accessibleDescription() != own)
        m_widget.setAccessibleDescription(own);
}

std::unique_ptr<WidgetView> make_widget_view(Control& control, QWidget& parent)
{
    for (const Maker make : makers) {
        if (auto view = make(control, parent))
            return view;
    }
    auto* area = std::make_unique<QWidget>(&parent).release(); // the parent owns it
    return std::make_unique<WidgetView>(control, *area);
}

} // namespace tessavox
