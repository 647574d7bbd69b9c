#include "platform/qt/blocking_work.h"

#include "platform/controls/timer.h"
#include "platform/qt/end_signals.h"
#include "tests/contract/blocking_work_contract.h"
#include "tests/platform/qt/demo_form.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDialog>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QToolBar>

#include <csignal>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

struct TickingForm : Form {
    explicit TickingForm(Forms& forms)
        : Form(forms, "TickingForm", FormKind::dialog, 3000, 3000)
    {
        timer.Enabled = true;
    }
    Timer timer{ *this, "timer", 1 };
};

class QtBlockingWorkBed {
public:
    BlockingWork& work() { return m_work; }
    static void user_wants_an_end()
    {
        if (QWidget* window = QApplication::activeModalWidget())
            QTest::keyClick(window, Qt::Key_Escape);
    }

private:
    MessageGate m_gate;
    QtBlockingWork m_work{ m_gate };
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, BlockingWorkContract, QtBlockingWorkBed);

struct Blocking : testing::Test {
    static QWidget* window()
    {
        QWidget* front = QApplication::activeModalWidget();
        return front && front->objectName() == "blockingWork" ? front : nullptr;
    }

    DemoDesktop desktop;
    QtBlockingWork work{ desktop.gate };
};

TEST_F(Blocking, WhatIsPostedAndTimersComeAfterwardsInTheirOrder)
{
    const auto form = std::make_shared<TickingForm>(desktop.forms);
    std::string log;
    form->timer.Tick = [&] {
        form->timer.Enabled = false;
        log += " tick";
    };
    form->Show();
    desktop.gate.post([&] { log += " first"; });
    int looks = 0;
    EXPECT_TRUE(work.wait(
        "Busy", [&] { return ++looks > 4; },
        [&] {
            QTest::qSleep(2); // the timer is due
            if (looks == 3)
                desktop.gate.post([&] {
                    desktop.gate.post([&] { log += " inner"; });
                    desktop.settle(); // as a message in a handler does
                    log += " last";
                });
            return 0.0;
        }));
    EXPECT_EQ(log, "");
    desktop.settle();
    EXPECT_EQ(log, " first tick inner last");
    form->Unload();
}

// Escape, the button of the window, and the system.
TEST_F(Blocking, AWindowTellsTheShareAndTheWorkCanBeEnded)
{
    const std::function<void(QWidget&)> ends[] = {
        [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); },
        [](QWidget& window) { window.close(); },
        [](QWidget&) { std::raise(SIGTERM); },
    };
    bool has_ended = false;
    const EndSignals end_signals(desktop.gate, [&] { has_ended = true; });
    work.end_is_wanted = [&] { return end_signals.is_wanted(); };
    for (const auto& end : ends) {
        QPointer<QWidget> seen;
        std::string told;
        const bool complete = work.wait(
            "Busy", [] { return false; },
            [&] {
                if ((seen = window()) && told.empty()) {
                    auto* bar = seen->findChild<QWidget*>("progress");
                    auto* const accessible = QAccessible::queryAccessibleInterface(bar);
                    told = accessible->text(QAccessible::Name).toStdString() + " "
                        + accessible->valueInterface()->currentValue().toString().toStdString();
                    end(*seen);
                }
                return 0.25;
            });
        EXPECT_FALSE(complete);
        EXPECT_EQ(told, "Busy 25");
        EXPECT_FALSE(seen);
        EXPECT_FALSE(desktop.gate.is_shut());
    }
    EXPECT_TRUE(end_signals.is_wanted());
    EXPECT_FALSE(has_ended);
}

TEST_F(Blocking, AssistiveTechnologiesCanDoNothingMeanwhile)
{
    const auto child = desktop.open();
    int done = 0;
    child->button.Click = child->check.Click = desktop.main->mnuFileNew.Click = [&] { ++done; };
    desktop.main->bar.ButtonClick = [&](int) { ++done; };
    desktop.settle();
    const auto act = [&] {
        desktop.find<QPushButton>("SpeakBtn").click();
        desktop.find<QCheckBox>("check").click();
        desktop.find<QMenu>("mnuFile").actions().front()->trigger();
        desktop.find<QToolBar>("bar").actions().front()->trigger();
        desktop.find<QScrollBar>("slider").setValue(5);
        desktop.find<QMainWindow>("DemoMain").close();
        desktop.settle();
    };
    bool has_acted = false;
    work.wait(
        "Busy", [&] { return has_acted; },
        [&] {
            act();
            return has_acted = true;
        });
    EXPECT_TRUE(desktop.main->is_loaded());
    EXPECT_EQ(child->slider.Value, 0);
    EXPECT_EQ(desktop.find<QScrollBar>("slider").value(), 0);
    QDialog question;
    question.setModal(true);
    question.show();
    act();
    question.hide();
    EXPECT_EQ(done, 0);
    desktop.main->refuses_to_go = true;
    act();
    EXPECT_EQ(done, 4);
    EXPECT_EQ(child->slider.Value, 5);
}

} // namespace
} // namespace tessavox
