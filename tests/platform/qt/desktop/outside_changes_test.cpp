#include "platform/qt/outside_changes.h"

#include "platform/qt/clipboard.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>
#include <functional>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

TEST(OutsideChanges, EveryChangeOfAFileOrTheClipboardIsTold)
{
    QTemporaryDir place;
    const QString folder = place.filePath("conf");
    const QDir files(folder);
    QDir().mkdir(folder);
    QtClipboard clipboard;
    QtOutsideChanges changes(clipboard);
    bool told = false;
    changes.watch(folder.toStdString() + "/", [&] { told = true; });
    const auto write
        = [&](const char* name) { std::ofstream(files.filePath(name).toStdString()) << "text"; };
    const std::function<void()> steps[] = {
        [&] { write("new"); },
        [&] { write("new"); }, // in place
        [&] { QFile::rename(files.filePath("new"), files.filePath("other")); },
        [&] { QFile::remove(files.filePath("other")); },
        [&] { clipboard.SetText(u"text"); },
        [&] { QDir().rename(folder, place.filePath("away")); },
        [&] { QDir().mkdir(folder); },
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        SCOPED_TRACE(i);
        QTest::qWait(0); // what the step before has left
        told = false;
        steps[i]();
        // A folder that comes back is told by what happens in it then.
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                if (i == std::size(steps) - 1)
                    write("new");
                return told;
            },
            20'000));
    }
}

} // namespace
} // namespace tessavox
