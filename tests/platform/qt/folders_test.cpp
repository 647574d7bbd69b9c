#include "platform/qt/desktop_services.h"
#include "platform/qt/program_folders.h"

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace tessavox {
namespace {

namespace fs = std::filesystem;

TEST(Folders, TheDefaultsAreInstalledOnceAndNeverCompleted)
{
    const QTemporaryDir temporary;
    const fs::path folder = temporary.path().toStdString();
    fs::create_directories(folder / "shipped");
    std::ofstream(folder / "shipped/web.txt") << "zero";
    std::ofstream(folder / "shipped/setting1.txt") << "one";
    fs::permissions(folder / "shipped/web.txt", fs::perms::owner_read);

    const std::string conf = prepare_config_folder(folder / "home/.config", folder / "shipped");
    EXPECT_EQ(conf, folder / "home/.config/tessavox/conf");
    EXPECT_TRUE(fs::exists(fs::path(conf) / "setting1.txt"));
    const fs::perms kept = fs::status(fs::path(conf) / "web.txt").permissions();
    EXPECT_NE(kept & fs::perms::owner_write, fs::perms::none);

    fs::remove(fs::path(conf) / "setting1.txt");
    EXPECT_EQ(prepare_config_folder(folder / "home/.config", folder / "shipped"), conf);
    EXPECT_FALSE(fs::exists(fs::path(conf) / "setting1.txt"));
}

TEST(Folders, ShippedDataIsTheSourceTreesOnlyForAProgramInItsBuildFolder)
{
    const QTemporaryDir temporary;
    const fs::path folder = temporary.path().toStdString();
    fs::create_directories(folder / "build");
    fs::create_directories(folder / "source/share");
    fs::create_directories(folder / "usr/bin");
    const std::string share = folder / "source/share";
    EXPECT_EQ(find_app_folder(folder / "build", folder / "build/", share), share);
    EXPECT_EQ(find_app_folder(folder / "usr/bin", folder / "build", share),
        folder / "usr/share/tessavox");
    fs::remove_all(folder / "source");
    EXPECT_EQ(
        find_app_folder(folder / "build", folder / "build", share), folder / "share/tessavox");
}

TEST(FileFilters, TakeEveryFileForAllFilesAndKeepTheirOrder)
{
    const QStringList expected{ "All Files (*)", "Wave Files (*.wav)",
        "Text (plain) (*.txt *.rtf)" };
    EXPECT_EQ(name_filters("All Files (*.*)|*.*|Wave Files (*.wav)|*.wav|"
                           "Text (plain) (*.txt;*.rtf)|*.txt; *.rtf"),
        expected);
    EXPECT_TRUE(name_filters("").isEmpty());
}

} // namespace
} // namespace tessavox
