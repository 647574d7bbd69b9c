// The windows of the program's forms.
#pragma once

#include "platform/controls/form.h"
#include "platform/document_arrangement.h"
#include "platform/form_window.h"
#include "platform/qt/form_views.h"
#include "platform/qt/timer_view.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QMenu;

namespace tessavox {

class MainWindow;
class MessageGate;

/// What the three kinds of windows share.
class QtFormWindow : public FormWindow, public ControlView {
public:
    ~QtFormWindow() override;

    void focus(Control& control) override;
    void control_changed() override;
    void SetWindowPos(Stacking stacking, const PixelBox& box) override;
    void PopupMenu(const MenuItem& menu) override;
    void set_style_sheet(const QString& sheet);
    /// The colours that the style sheet takes from the desktop follow when that changes them.
    void palette_changed();
    /// What is shown and closed as a whole.
    QWidget& top() const { return *m_top; }
    /// The menu of an item of the form, or null.
    virtual QMenu* menu_of(const MenuItem& item) const;
    /// Forgets the form and everything of it, and hides; the widgets go later.
    virtual void detach();

protected:
    /// `top` is shown and closed as a whole and belongs to the window; the controls are drawn on
    /// `canvas`, which lies in it.
    QtFormWindow(Form& form, MessageGate& gate, QWidget& top, QWidget& canvas);

    MessageGate& gate() const { return m_gate; }
    Form* form() const { return m_form; }
    /// Its controls as drawn, which are made when it is first shown: a form sets hundreds of values
    /// while it loads. Null before.
    FormViews* views() { return m_views ? &*m_views : nullptr; }
    void redraw();
    /// Tells the form how large its client area is, unless it knows.
    void report_client_size(const QSize& pixels);
    /// Tells the form where its window is; pixels, the frame included.
    void report_place(const QRect& frame);
    /// The user closes it. Returns whether the form has gone.
    bool user_closes();
    void user_changes_state();

private:
    void make_and_show();
    virtual void show_first() = 0;
    virtual void resize_to(const QSize& pixels) = 0;
    void move_to_place();
    void show_or_hide();

    Form* m_form;
    MessageGate& m_gate;
    QPointer<QWidget> m_top;
    QWidget& m_canvas;
    std::optional<FormViews> m_views;
    std::vector<std::unique_ptr<TimerView>> m_timers;
    std::string m_caption; // as shown
    qint64 m_palette = 0; // by whose colours the style sheet is drawn
    WindowState m_state = WindowState::normal;
    bool m_show_waits = false;
    double m_left;
    double m_top_edge;
    double m_width;
    double m_height;
    QSize m_reported;
};

/// Makes the windows, and lets closed ones go.
class QtFormWindows : public FormWindows, public DocumentArrangement {
public:
    /// `gate` holds the ticks of timers back.
    explicit QtFormWindows(MessageGate& gate)
        : m_gate(gate)
    {
    }
    std::unique_ptr<FormWindow> open(Form& form) override;
    void close(std::unique_ptr<FormWindow> window) override;
    /// The menu of an item of the main window, or null.
    QMenu* menu_of(const MenuItem& item) const;
    void Arrange(Arrangement arrangement) override;

private:
    MessageGate& m_gate;
    MainWindow* m_main = nullptr;
    QObject m_closed; // owns closed windows until the handlers that closed them have returned
};

/// A plain area that says when it is shown or resized, and when the desktop's look changes.
class ClientArea : public QWidget {
public:
    using QWidget::QWidget;
    std::function<void()> sized;
    std::function<void()> restyled;
    /// A mouse button was pressed; or the pointer moved while buttons are held.
    std::function<void(const QMouseEvent&)> mouse;

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
};

} // namespace tessavox
