#include "platform/qt/blocking_work.h"

#include "platform/controls/timer.h"
#include "tests/platform/qt/demo_form.h"

#include <QAccessible>
#include <QDialog>
#include <QPointer>
#include <QTest>

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

class Blocking : public testing::Test {
protected:
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

TEST_F(Blocking, TicksGoOnWhileAHandlerAsksSomethingButNotThoseOfItsOwnTimer)
{
    const auto asking = std::make_shared<TickingForm>(desktop.forms);
    const auto other = std::make_shared<TickingForm>(desktop.forms);
    int ticks = 0;
    int nested = 0;
    bool has_asked = false;
    other->timer.Resting = true;
    other->timer.Tick = [&] { ++ticks; };
    asking->timer.Tick = [&] {
        if (std::exchange(has_asked, true)) {
            ++nested;
            return;
        }
        QDialog question;
        question.setModal(true);
        question.show();
        EXPECT_TRUE(QTest::qWaitFor([&, before = ticks] { return ticks > before + 1; }, 20'000));
        EXPECT_EQ(nested, 0);
    };
    asking->Show();
    other->Show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return nested > 0; }, 20'000));
    asking->Unload();
    other->Unload();
}

TEST_F(Blocking, AWindowTellsTheShareAndEscapeOrItsCloseButtonEndsTheWork)
{
    for (const bool by_key : { true, false }) {
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
                    if (by_key)
                        QTest::keyClick(seen, Qt::Key_Escape);
                    else
                        seen->close();
                }
                return 0.25;
            });
        EXPECT_FALSE(complete);
        EXPECT_EQ(told, "Busy 25");
        EXPECT_FALSE(seen);
        EXPECT_FALSE(desktop.gate.is_shut());
    }
}

} // namespace
} // namespace tessavox
