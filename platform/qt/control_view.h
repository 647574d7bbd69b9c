// A control of a form, drawn by a widget: what all kinds have in common, and the maker of the right
// kind.
#pragma once

#include "platform/controls/control.h"
#include "platform/failure.h"

#include <QObject>
#include <QString>

#include <memory>

class QWidget;

namespace tessavox {

class MessageGate;

/// Redraws its widget from the control, never the other way round, with the widget's signals
/// blocked; so whatever the widget does signal comes from the user and is passed on. The widget
/// belongs to its parent widget. The view outlives its control once it is detached.
class WidgetView : public QObject, public ControlView {
public:
    WidgetView(Control& control, QWidget& widget);
    ~WidgetView() override;

    /// What the user does goes through `gate`, and is dropped unless it lets it through.
    void report_through(const MessageGate& gate) { m_gate = &gate; }

    void control_changed() final;
    /// The form is gone, or about to be: neither the control nor its pane is touched any more.
    virtual void detach();

    QWidget& widget() const { return m_widget; }
    /// The one that takes the keyboard; the same unless the widget is only a wrapper.
    virtual QWidget& focus_widget() const { return m_widget; }
    /// What assistive technologies call the control: its caption, or `label` where it has none,
    /// or its tool tip.
    void name_for_assistance(const QString& label);

protected:
    /// Caption, value and the like; geometry and state are done.
    virtual void redraw() { }
    /// The tool tip, as it is after redraw().
    virtual QString tip() const;
    /// The control has the focus and is about to be disabled or hidden.
    virtual void about_to_lose_focus() { }
    /// Reports something to the control. Afterwards the widget shows what the control made of it.
    template <class Report> void user_did(Report&& report)
    {
        if (!m_control)
            return;
        if (user_may_act())
            attempt(std::forward<Report>(report));
        control_changed();
    }
    bool attached() const { return m_control != nullptr; }
    bool user_may_act() const;

private:
    void draw_name();

    Control* m_control;
    const MessageGate* m_gate = nullptr;
    QWidget& m_widget;
    QString m_label;
};

/// The widget of a control on `parent`, and its view. Kinds without a look of their own get an
/// empty area.
std::unique_ptr<WidgetView> make_widget_view(Control& control, QWidget& parent);

} // namespace tessavox
