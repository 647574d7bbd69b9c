#include "platform/failure.h"
#include "platform/rtf/reader.h"
#include "platform/rtf/writer.h"
#include "platform/text_limits.h"
#include "tests/platform/files/temporary_folder.h"
#include "tests/platform/rtf/described.h"
#include "tests/platform/rtf/files.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tessavox::rtf {
namespace {

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

/// What another word processor makes of what we write, as it writes it in turn.
Document as_read_by_libreoffice(const Document& document)
{
    const TemporaryFolder folder;
    std::ofstream(folder / "ours.rtf", std::ios::binary) << write_rich_text(document);
    const std::string command
        = "timeout 100 soffice --headless --norestore -env:UserInstallation=file://"
        + (folder / "profile").string() + " --convert-to rtf --outdir " + (folder / "out").string()
        + " " + (folder / "ours.rtf").string() + " >/dev/null 2>&1";
    [[maybe_unused]] const int told_nothing = std::system(command.c_str());
    const std::string theirs = contents_of(folder / "out" / "ours.rtf");
    return read_rich_text(theirs);
}

/// LibreOffice keeps none for the end of a paragraph that has text.
void forget_formats_of_ends(Document& document)
{
    std::size_t run = 0;
    for (Paragraph& paragraph : document.paragraphs) {
        run += paragraph.runs;
        if (paragraph.runs > 0)
            paragraph.mark = document.runs[run - 1].format;
    }
}

TEST(RichTextFiles, ThatWeWriteAreUnderstoodByLibreOffice)
{
    if (std::system("command -v soffice >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "LibreOffice Writer is not installed";
    const fs::path path = fs::path(TESSAVOX_RTF_FILES) / "by_hand_text_pad.rtf";
    Document ours = read_rich_text(contents_of(path));
    for (CharacterFormat& format : ours.character_formats) {
        if (format.font != no_font
            && ours.fonts[static_cast<std::size_t>(format.font)] == "MS Gothic")
            format.half_points
                = CharacterFormat().half_points; // Chinese text has its own size there
    }
    Document theirs = as_read_by_libreoffice(ours);
    forget_formats_of_ends(ours);
    forget_formats_of_ends(theirs);
    EXPECT_EQ(described(theirs), described(ours));
}

} // namespace
} // namespace tessavox::rtf
