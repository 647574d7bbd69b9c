#include "platform/failure.h"
#include "platform/qt/shell.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

constexpr int bound_ms = 20'000;

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(bytes);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST(DesktopShell, OpensHelpAndAddressesWithTheDesktopsOpenerAndTellsWhyNot)
{
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir("help");
    write(folder.filePath("help/index.html"), "");
    write(folder.filePath("xdg-open"), "#!/bin/sh\necho \"$1\" >\"${0%/*}/opened\"\n");
    const QByteArray programs = qgetenv("PATH");
    qputenv("PATH", folder.path().toUtf8() + ":" + programs);
    const auto is_opened = [&](const QString& address) {
        return QTest::qWaitFor(
            [&] {
                QFile file(folder.filePath("opened"));
                return file.open(QFile::ReadOnly) && file.readAll().trimmed() == address;
            },
            bound_ms);
    };
    const std::string app_folder = folder.path().toStdString();
    QtShell shell(app_folder);
    EXPECT_EQ(shell.open(app_folder + "/none.html"), 2);
    EXPECT_EQ(shell.open(app_folder + "/none/none.html"), 3);
    EXPECT_GE(shell.open(app_folder + "/tessavox.chm"), Shell::opened);
    EXPECT_TRUE(is_opened("file://" + folder.filePath("help/index.html")));
    shell.navigate("mailto:reader@example.org");
    EXPECT_TRUE(is_opened("mailto:reader@example.org"));
    QFile::remove(folder.filePath("xdg-open"));
    EXPECT_EQ(shell.open(app_folder + "/tessavox.chm"), 31);
    EXPECT_THROW(shell.navigate("mailto:reader@example.org"), Failure);
    qputenv("PATH", programs);
}

} // namespace
} // namespace tessavox
