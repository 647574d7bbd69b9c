#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using Documents = ProgramTest;

TEST_F(Documents, HostileSettingsAreSteppedOverOneByOne)
{
    std::string history = "\"\r\n";
    for (int i = 0; i < 100; ++i)
        history += "h.example\r\n";
    struct Case {
        const char* what;
        const char* file;
        std::string bytes;
        const char* then; // voice, format, speed, automatic reading, and the font
    };
    // What a line doesn't give stays as it is by design, and the lines after it still count.
    const Case cases[] = { { "nothing", "setting1.txt", "", "-1 -1 0 1 Serif 20 1" },
        { "one quote", "setting1.txt", "\"", "-1 -1 0 1 Serif 20 1" },
        { "no numbers", "setting1.txt", file_of_lines({ "a", "b", "c", "d" }),
            "-1 -1 0 1 Serif 20 1" },
        { "too large", "setting1.txt", file_of_lines({ "", "2", "11", "3" }),
            "-1 -1 0 1 Serif 20 1" },
        { "huge", "setting1.txt", file_of_lines({ "", "99999", "-1e9", "1e99" }),
            "-1 -1 0 1 Serif 20 1" },
        { "one bad line", "setting1.txt", file_of_lines({ "8kHz 16Bit Mono", "x", "-9", " 2" }),
            "-1 2 -9 2 Serif 20 1" },
        { "binary", "setting1.txt", std::string("\xFF\xFE\0\0\x80\r\r\r\r", 9),
            "-1 -1 0 1 Serif 20 1" },
        { "no font", "setting2.txt", file_of_lines({ "", "-1", "maybe" }),
            "1 3 5 0 Comic Sans MS 12 0" },
        { "no size", "setting2.txt", file_of_lines({ "Mono", "big", "True" }),
            "1 3 5 0 Mono 12 1" },
        { "a long history", "setting3.txt", history + "\"\r\n", "1 3 5 0 Serif 20 1" } };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.what);
        RunningProgram other;
        other.file("setting1.txt") = file_of_lines({ "8kHz 16Bit Stereo", " 1", " 5", " 0", "" });
        other.file("setting2.txt") = file_of_lines({ "Serif", " 20", "True" });
        other.file(row.file) = row.bytes;
        other.start();
        const frmDocument& shown = other.document();
        std::ostringstream then;
        then << shown.VoiceCB.ListIndex << ' ' << shown.FormatCB.ListIndex << ' '
             << shown.cpvSlider1.Value << ' ' << shown.Check1.Value << ' ' << other.pane().font_name
             << ' ' << other.pane().font_size << ' ' << other.pane().font_bold;
        EXPECT_EQ(then.str(), row.then);
        EXPECT_TRUE(other.boxes.shown.empty());
        EXPECT_TRUE(other.main.Unload());
    }
}

TEST_F(Documents, AreNumberedByTheLowestFreeSlotUpToThirty)
{
    start();
    frmDocument& second = open_another();
    EXPECT_EQ(open_another().Caption, "Document 3");
    EXPECT_EQ(document().Tag, "3");
    second.Unload();
    EXPECT_EQ(open_another().Caption, "Document 2");
    for (int i = 0; i < 40; ++i)
        open_another();
    EXPECT_EQ(windows.open_forms.size(), 31u); // with the main window
    EXPECT_EQ(document().Caption, "Document 30");
    EXPECT_TRUE(boxes.shown.empty());
}

} // namespace
} // namespace tessavox::tests
