#include "platform/files/program_folders.h"

#include "tests/platform/files/test_folder.h"

#include <gtest/gtest.h>

namespace tessavox {
namespace {

TEST(Folders, TheDefaultsAreInstalledOnceAndNeverCompleted)
{
    const TestFolder folder;
    folder.write("shipped/web.txt", "zero");
    folder.write("shipped/setting1.txt", "one");
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

} // namespace
} // namespace tessavox
