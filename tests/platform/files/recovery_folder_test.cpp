#include "platform/files/recovery_folder.h"

#include "platform/files/disk_file_store.h"
#include "tests/platform/files/test_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <optional>

namespace tessavox {
namespace {

struct Recovery : testing::Test {
    /// What lies there once everything is written: title and content.
    std::map<std::string, std::string> copies()
    {
        folder.reset();
        std::map<std::string, std::string> found;
        std::error_code none;
        for (const auto& file : fs::directory_iterator(path, none)) {
            const std::string name = file.path().filename();
            EXPECT_EQ(
                fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
            found[name.substr(0, name.find(" 20")) + file.path().extension().string()]
                = DiskFileStore().read(file.path());
        }
        return found;
    }
    TestFolder place;
    std::string path = place / "state/recovery";
    std::optional<RecoveryFolder> folder{ path };
};

TEST_F(Recovery, TheNewestTextOfADocumentIsKeptUntilItIsDropped)
{
    const auto first = folder->create(), second = folder->create(), third = folder->create();
    for (int i = 0; i < 50; ++i)
        first->keep("Document 1", u"text " + to_utf16(std::to_string(i)));
    first->keep("Document 1", u"");
    second->keep("/home/\u00fc.rtf", u"\u00e4");
    third->keep("Document 3", u"saved");
    third->drop();
    folder->create()->keep(std::string(100, 'x') + std::string(50, '\xc3'), u"long");
    const std::map<std::string, std::string> kept = copies();
    EXPECT_EQ(kept.size(), 3u);
    EXPECT_EQ(kept.at("Document 1.txt"), "text 49");
    EXPECT_EQ(kept.at("\u00fc.rtf.txt"), "\u00e4");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all);
}

TEST_F(Recovery, AFileIsKeptThatAnotherHasWritten)
{
    const std::string file = place / "letter.rtf";
    const auto put = [&](const char* bytes) { std::ofstream(file) << bytes; };
    const auto copy = folder->create();
    put("read");
    copy->note_file(file);
    copy->keep_foreign_file(file);
    copy->keep_foreign_file(place / "none");
    EXPECT_FALSE(fs::exists(path));
    put("another's");
    copy->keep_foreign_file(file);
    EXPECT_EQ(copies(), (std::map<std::string, std::string>{ { "letter.rtf.rtf", "another's" } }));
}

TEST_F(Recovery, CopiesAreRemovedWhenTheyAreAMonthOld)
{
    fs::create_directories(path);
    const auto now = fs::file_time_type::clock::now();
    for (const int days : { 29, 31 }) {
        const std::string file = path + "/" + std::to_string(days) + " 20.txt";
        std::ofstream(file) << days;
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
        fs::last_write_time(file, now - std::chrono::days(days));
    }
    folder.emplace(path);
    EXPECT_EQ(copies(), (std::map<std::string, std::string>{ { "29.txt", "29" } }));
}

} // namespace
} // namespace tessavox
