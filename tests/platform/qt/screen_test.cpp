#include "platform/qt/screen.h"

#include <QApplication>
#include <QEventLoop>

#include <functional>
#include <gtest/gtest.h>

namespace tessavox {
namespace {

bool shows_hourglass()
{
    const QCursor* cursor = QApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::WaitCursor;
}

void run_as_handler(const std::function<void()>& handler)
{
    QObject receiver;
    QMetaObject::invokeMethod(&receiver, handler, Qt::QueuedConnection);
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // as the message loop does
}

TEST(MousePointers, TheHourglassIsShownWhileItsHandlerRunsAndNoLonger)
{
    QtScreen screen;
    run_as_handler([&] {
        screen.set_MousePointer(MousePointer::hourglass);
        screen.set_MousePointer(MousePointer::normal);
        EXPECT_FALSE(shows_hourglass());
        screen.set_MousePointer(MousePointer::hourglass);
        screen.set_MousePointer(MousePointer::hourglass);
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents); // as a long save does
        QEventLoop loop; // as a message does
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        loop.exec();
        EXPECT_TRUE(shows_hourglass());
    });
    EXPECT_FALSE(shows_hourglass());
}

} // namespace
} // namespace tessavox
