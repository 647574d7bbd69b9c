#include "platform/failure.h"
#include "platform/rtf/reader.h"
#include "platform/rtf/writer.h"
#include "platform/text_limits.h"
#include "tests/platform/rtf/described.h"
#include "tests/platform/rtf/files.h"

#include <gtest/gtest.h>

namespace tessavox::rtf {
namespace {

namespace fs = std::filesystem;

TEST(RichTextFiles, OfManyProgramsAreUnderstoodAndSurviveBeingWritten)
{
    const auto paths = rich_text_files();
    ASSERT_GE(paths.size(), 10u);
    for (const fs::path& path : paths) {
        const Document document = read_rich_text(contents_of(path));
        const std::string expected = contents_of(fs::path(path).replace_extension(".txt"));
        EXPECT_EQ(described(document), expected) << path;
        EXPECT_EQ(described(read_rich_text(write_rich_text(document))), expected) << path;
    }
}

TEST(RichTextFiles, ThatBreakOffAnywhereGiveWhatCameBefore)
{
    for (const fs::path& path : rich_text_files()) {
        const std::string whole = contents_of(path);
        const std::u16string text = read_rich_text(whole).text;
        for (std::size_t size = 5; size < whole.size(); size += 7) {
            const Document document = read_rich_text(whole.substr(0, size));
            ASSERT_EQ(flaw_of(document), "") << path << " up to " << size;
            // The last word may be half there: half a table's row, half a Unicode character.
            const std::size_t sure = std::max<std::size_t>(document.text.size(), 24) - 24;
            ASSERT_EQ(document.text.substr(0, sure), text.substr(0, sure)) << path << ": " << size;
        }
    }
}

TEST(RichTextFiles, AreRefusedIfTheyAreSomethingElseOrTooLarge)
{
    std::string paragraphs = "{\\rtf1 ";
    for (int i = 0; i < 1'500'000; ++i)
        paragraphs += "\\par ";
    const std::string texts[] = { "", " ", "{\\rt", "Plain text {\\rtf1 a}", "\xD0\xCF\x11\xE0",
        std::string(most_text_bytes + 1, '{'), paragraphs };
    for (const std::string& text : texts)
        EXPECT_THROW(read_rich_text(text), Failure) << text.substr(0, 20);
}

} // namespace
} // namespace tessavox::rtf
