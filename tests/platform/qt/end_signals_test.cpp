#include "platform/qt/end_signals.h"

#include "platform/qt/message_gate.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QTimer>

#include <csignal>
#include <memory>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

/// What keeps a signal waiting: a handler that asks the user something, or one that blocks.
class Ending : public testing::TestWithParam<bool> { };

TEST_P(Ending, ASignalWaitsForTheHandlerThatRunsAndTheLoopRestsMeanwhile)
{
    constexpr int wait_ms = 50;
    constexpr int wakes_of_a_loop_at_rest = 100; // at most; a busy one wakes thousands of times
    MessageGate gate;
    QEventLoop loop;
    int ends = 0;
    const EndSignals end_signals(gate, [&] {
        ++ends;
        loop.quit();
    });
    int wakes = 0;
    const auto count = QObject::connect(
        QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, [&] { ++wakes; });
    const auto wait = [&](auto&& over) {
        std::raise(SIGTERM);
        QTimer::singleShot(wait_ms, [&, over] {
            EXPECT_EQ(ends, 0);
            EXPECT_LT(wakes, wakes_of_a_loop_at_rest);
            over();
        });
    };
    auto shut = GetParam() ? std::make_unique<MessageGate::Shut>(gate) : nullptr;
    QTimer::singleShot(0, [&] {
        if (shut)
            return wait([&] { shut.reset(); });
        QEventLoop question;
        wait([&] { question.quit(); });
        question.exec();
    });
    loop.exec();
    QObject::disconnect(count);
    EXPECT_EQ(ends, 1);
}

INSTANTIATE_TEST_SUITE_P(AskingAndBlocking, Ending, testing::Bool());

} // namespace
} // namespace tessavox
