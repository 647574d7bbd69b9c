#include "platform/failure.h"
#include "platform/rtf/reader.h"
#include "platform/rtf/writer.h"
#include "platform/text_limits.h"
#include "tests/platform/rtf/described.h"
#include "tests/platform/rtf/files.h"

#include <gtest/gtest.h>

namespace tessavox::rtf {
namespace {

TEST(RichTextFiles, OfManyProgramsAreUnderstoodAlsoInPartAndSurviveBeingWritten)
{
    const auto files = rich_text_files();
    ASSERT_EQ(files.size(), 10u);
    for (const RichTextFile& file : files) {
        const Document whole = read_rich_text(file.bytes);
        EXPECT_EQ(described(whole), file.described) << file.name;
        EXPECT_EQ(described(read_rich_text(write_rich_text(whole))), file.described) << file.name;
        for (std::size_t size = 5; size < file.bytes.size(); size += 7) { // where it breaks off
            const Document document = read_rich_text(file.bytes.substr(0, size));
            ASSERT_EQ(flaw_of(document), "") << file.name << " up to " << size;
            // The last word may be half there: half a table's row, half a Unicode character.
            const std::size_t sure = std::max<std::size_t>(document.text.size(), 24) - 24;
            ASSERT_EQ(document.text.substr(0, sure), whole.text.substr(0, sure)) << file.name;
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
