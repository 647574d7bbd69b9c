#include "platform/qt/blocking_work.h"

#include "platform/qt/child_widget.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/text_conversion.h"
#include "platform/texts.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace tessavox {
namespace {

constexpr int look_interval_ms = 50;
/// Shorter work would only make a window flash.
constexpr int time_until_window_ms = 400;

class ProgressWindow : public QDialog {
public:
    explicit ProgressWindow(const QString& text)
        : QDialog(QApplication::activeWindow())
        , m_bar(make_child<QProgressBar>(this))
    {
        setObjectName("blockingWork");
        setWindowTitle(to_qt(application_title));
        setModal(true);
        auto& label = make_child<QLabel>(this);
        label.setTextFormat(Qt::PlainText);
        label.setText(text);
        m_bar.setObjectName("progress");
        m_bar.setAccessibleName(text);
        m_bar.setRange(0, 100);
        auto& rows = make_child<QVBoxLayout>(this);
        rows.addWidget(&label);
        rows.addWidget(&m_bar);
        rows.setSizeConstraint(QLayout::SetFixedSize);
    }

    bool is_ended() const { return m_is_ended; }
    void show_share(double share)
    {
        m_bar.setValue(static_cast<int>(100 * std::clamp(share, 0.0, 1.0)));
    }
    void reject() override { m_is_ended = true; } // the Escape key

protected:
    void closeEvent(QCloseEvent*) override { m_is_ended = true; }

private:
    QProgressBar& m_bar;
    bool m_is_ended = false;
};

} // namespace

bool QtBlockingWork::wait(const std::string& text, const std::function<bool()>& is_done,
    const std::function<double()>& share)
{
    const MessageGate::Shut shut(m_gate);
    ProgressWindow window(to_qt(text));
    QTimer look;
    look.start(look_interval_ms);
    QElapsedTimer time;
    time.start();
    QEventLoop loop;
    while (!is_done()) {
        if (window.is_ended() || (end_is_wanted && end_is_wanted()))
            return false;
        window.show_share(share());
        if (!window.isVisible() && time.hasExpired(time_until_window_ms))
            window.show();
        // Until the window is there to keep the user's keys and clicks from the others, they wait.
        loop.processEvents(QEventLoop::WaitForMoreEvents
            | (window.isVisible() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents));
    }
    return true;
}

} // namespace tessavox
