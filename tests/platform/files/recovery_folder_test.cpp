#include "platform/files/recovery_folder.h"

#include "platform/files/disk_file_store.h"
#include "tests/contract/recovery_copies_contract.h"
#include "tests/platform/files/test_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <optional>

namespace tessavox {
namespace {

struct RecoveryBed {
    RecoveryCopies& copies() { return *folder; }
    /// What lies there once everything is written: title and content.
    std::map<std::string, std::string> files()
    {
        folder.emplace(location);
        std::map<std::string, std::string> found;
        std::error_code none;
        for (const auto& file : fs::directory_iterator(location, none)) {
            const std::string name = file.path().filename();
            EXPECT_EQ(
                fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
            found[name.substr(0, name.find(" 20")) + file.path().extension().string()]
                = DiskFileStore().read(file.path());
        }
        return found;
    }
    std::vector<std::u16string> kept()
    {
        std::vector<std::u16string> texts;
        for (const auto& [name, bytes] : files())
            texts.push_back(to_utf16(bytes));
        return texts;
    }
    std::string path(const std::string& name) const
    {
        std::ofstream(place / name) << "text";
        return place / name;
    }
    std::size_t foreign_files() { return files().size(); }

    TestFolder place;
    std::string location = place / "state/recovery";
    std::optional<RecoveryFolder> folder{ location };
};

INSTANTIATE_TYPED_TEST_SUITE_P(Disk, RecoveryCopiesContract, RecoveryBed);

struct Recovery : testing::Test, RecoveryBed { };

TEST_F(Recovery, CopiesAreCalledAsTheirDocumentsAndNobodyElseCanReadThem)
{
    const auto document = folder->create();
    document->keep("/home/\u00fc.rtf", u"text");
    folder->create()->keep(std::string(100, 'x') + std::string(50, '\xc3'), u"long");
    const std::map<std::string, std::string> found = files();
    EXPECT_EQ(found.size(), 2u);
    EXPECT_EQ(found.at("\u00fc.rtf.txt"), "text");
    EXPECT_EQ(fs::status(location).permissions(), fs::perms::owner_all);
}

TEST_F(Recovery, AFileIsKeptThatAnotherHasWritten)
{
    const auto copy = folder->create();
    const std::string file = path("letter.rtf");
    copy->note_file(file);
    copy->keep_foreign_file(file);
    copy->keep_foreign_file(place / "none");
    EXPECT_FALSE(fs::exists(location));
    std::ofstream(file) << "another's";
    copy->keep_foreign_file(file);
    EXPECT_EQ(files(), (std::map<std::string, std::string>{ { "letter.rtf.rtf", "another's" } }));
}

TEST_F(Recovery, CopiesAreRemovedWhenTheyAreAMonthOld)
{
    fs::create_directories(location);
    const auto now = fs::file_time_type::clock::now();
    for (const int days : { 29, 31 }) {
        const std::string file = location + "/" + std::to_string(days) + " 20.txt";
        std::ofstream(file) << days;
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
        fs::last_write_time(file, now - std::chrono::days(days));
    }
    folder.emplace(location); // it tidies up on a thread of its own, and is done when it is ended
    EXPECT_EQ(files(), (std::map<std::string, std::string>{ { "29.txt", "29" } }));
}

} // namespace
} // namespace tessavox
