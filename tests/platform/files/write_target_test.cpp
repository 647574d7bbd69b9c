#include "platform/files/write_target.h"

#include "tests/platform/files/temporary_folder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace tessavox {
namespace {

TEST(WriteTarget, WhatCannotBeWrittenIsKnownBefore)
{
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "text";
    std::ofstream(folder / "fixed") << "text";
    fs::permissions(folder / "fixed", fs::perms(0444));
    fs::create_directory(folder / "closed");
    fs::permissions(folder / "closed", fs::perms(0555));
    fs::create_symlink("/dev/null", folder / "device");
    fs::create_symlink("file", folder / "link");
    const struct {
        std::string name;
        WriteObstacle obstacle;
    } rows[] = {
        { "file", WriteObstacle::none },
        { "new", WriteObstacle::none },
        { "link", WriteObstacle::none },
        { "fixed", WriteObstacle::not_writable },
        { "closed", WriteObstacle::not_writable },
        { "closed/new", WriteObstacle::not_writable },
        { "device", WriteObstacle::not_writable },
        { std::string(300, 'n'), WriteObstacle::not_writable },
        { "gone/new", WriteObstacle::no_folder },
        { "file/new", WriteObstacle::no_folder },
    };
    for (const auto& row : rows)
        EXPECT_EQ(obstacle_to_writing(folder / row.name), row.obstacle) << row.name;
    fs::permissions(folder / "closed", fs::perms(0755));
}

} // namespace
} // namespace tessavox
