#include "platform/files/disk_file_store.h"
#include "platform/files/program_folders.h"
#include "platform/text_limits.h"
#include "tests/contract/file_store_contract.h"
#include "tests/platform/files/test_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace tessavox {
namespace {

class DiskBed {
public:
    FileStore& store() { return m_store; }
    std::string path(const std::string& name) const { return m_folder / name; }

private:
    TestFolder m_folder;
    DiskFileStore m_store;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Disk, FileStoreContract, DiskBed);

struct DiskFiles : testing::Test {
    TestFolder folder;
    DiskFileStore store;
};

TEST_F(DiskFiles, WhatIsNoRegularFileIsRefusedAtOnceAndStaysWhatItIs)
{
    fs::create_directory(folder / "directory");
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    fs::create_symlink(folder / "ring", folder / "ring");
    fs::create_symlink("/dev/null", folder / "null");
    for (const char* name : { "directory", "fifo", "ring", "null" }) {
        const fs::file_type before = fs::symlink_status(folder / name).type();
        EXPECT_THROW(store.read(folder / name), Failure) << name;
        EXPECT_THROW(store.write(folder / name, "text", Durability::durable), Failure) << name;
        EXPECT_EQ(fs::symlink_status(folder / name).type(), before) << name;
    }
    EXPECT_THROW(store.write(folder / "missing/file", "text", Durability::durable), Failure);
    EXPECT_EQ(folder.entries(), 4u);
}

TEST_F(DiskFiles, WhatIsNoDocumentIsKnownBeforeItIsOpenedAndNothingHugeIsRead)
{
    folder.write("text", "a\n");
    folder.write("large", "");
    fs::resize_file(folder / "large", (std::uintmax_t(64) << 20) + 1);
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    const std::pair<std::string, ReadObstacle> rows[] = {
        { "text", ReadObstacle::none },
        { "large", ReadObstacle::too_long },
        { "fifo", ReadObstacle::no_file },
        { "none", ReadObstacle::not_readable },
    };
    for (const auto& [name, obstacle] : rows)
        EXPECT_EQ(store.obstacle_to_opening(folder / name), obstacle) << name;
    EXPECT_THROW(store.read(folder / "large"), Failure);
}

TEST_F(DiskFiles, LinksAreFollowedAlsoToAFileThatIsNotThereYet)
{
    folder.write("target", "before");
    fs::create_symlink("target", folder / "middle");
    fs::create_symlink("middle", folder / "link");
    store.write(folder / "link", "after", Durability::durable);
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(folder.content("target"), "after");
    fs::create_symlink("later", folder / "early");
    store.write(folder / "early", "new", Durability::durable);
    EXPECT_EQ(folder.content("later"), "new");
}

TEST_F(DiskFiles, AllNamesOfAFileSeeTheNewContentAndItsPermissionsStay)
{
    folder.write("name", "a longer text than the next one");
    fs::create_hard_link(folder / "name", folder / "other");
    store.write(folder / "name", "short", Durability::durable);
    EXPECT_EQ(folder.content("other"), "short");
    EXPECT_EQ(fs::hard_link_count(folder / "other"), 2u);
    fs::remove(folder / "other");
    fs::permissions(folder / "name", fs::perms(0640));
    store.write(folder / "name", "again", Durability::durable);
    EXPECT_EQ(fs::status(folder / "name").permissions(), fs::perms(0640));
    EXPECT_EQ(folder.entries(), 1u);
}

TEST_F(DiskFiles, TheOldContentSurvivesADiskThatTakesNoMore)
{
    const std::string before(3000, 'b');
    folder.write("alone", before);
    folder.write("linked", before);
    fs::create_hard_link(folder / "linked", folder / "other");
    {
        const SizeLimit full(4096);
        const std::string after(100'000, 'a');
        EXPECT_THROW(store.write(folder / "alone", after, Durability::durable), Failure);
        EXPECT_THROW(store.write(folder / "linked", after, Durability::durable), Failure);
        EXPECT_THROW(store.write(folder / "new", after, Durability::durable), Failure);
    }
    EXPECT_EQ(folder.content("alone"), before);
    EXPECT_EQ(folder.content("other"), before);
    EXPECT_EQ(folder.entries(), 3u) << "something was left behind";
}

TEST_F(DiskFiles, EachReadSeesTheLastChangeHoweverSoonItCame)
{
    const auto long_ago = fs::file_time_type::clock::now() - std::chrono::hours(1);
    folder.write("note", "0");
    fs::last_write_time(folder / "note", long_ago);
    for (const char* bytes : { "0", "1", "2", "2", "3" }) {
        folder.write("note", bytes); // in place, of one size
        EXPECT_EQ(store.read(folder / "note"), bytes);
        fs::last_write_time(folder / "note", long_ago);
        EXPECT_EQ(store.read(folder / "note"), bytes);
        EXPECT_EQ(store.read(folder / "note"), bytes);
    }
    fs::remove(folder / "note");
    EXPECT_THROW(store.read(folder / "note"), Failure);
}

TEST_F(DiskFiles, WhatCannotBeWrittenIsKnownBefore)
{
    folder.write("file", "text");
    folder.write("fixed", "text");
    fs::permissions(folder / "fixed", fs::perms(0444));
    fs::create_directory(folder / "closed");
    fs::permissions(folder / "closed", fs::perms(0555));
    fs::create_symlink("/dev/null", folder / "device");
    fs::create_symlink("file", folder / "link");
    const std::pair<std::string, WriteObstacle> rows[] = {
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
    for (const auto& [name, obstacle] : rows) {
        EXPECT_EQ(store.obstacle_to_writing(folder / name), obstacle) << name;
        if (obstacle != WriteObstacle::none && ::geteuid() != 0) { // nothing is read-only to root
            EXPECT_THROW(store.write(folder / name, "", Durability::durable), Failure) << name;
        }
    }
    EXPECT_EQ(folder.content("fixed"), "text");
    fs::permissions(folder / "closed", fs::perms(0755));
}

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
