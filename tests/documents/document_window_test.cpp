#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using Documents = ProgramTest;

TEST_F(Documents, OpenWithTheSettingsOfTheFilesAndWriteThemBack)
{
    file("setting1.txt") = file_of_lines({ "8kHz 8Bit Mono", " 1", "-4", " 0", "a.example" });
    file("setting2.txt") = file_of_lines({ "Serif", " 10.5", "True" });
    file("setting3.txt")
        = file_of_lines({ "1", "", "3", "4", "5", "6", "7", "8", "9", "10", "11" });
    const std::string before = file("setting1.txt");
    start();
    EXPECT_EQ(pane().font_name, "Serif");
    EXPECT_EQ(pane().font_size, 10);
    EXPECT_TRUE(pane().font_bold);
    EXPECT_EQ(pane().SelFontSize(), 12);
    EXPECT_FALSE(pane().hide_selection);
    ASSERT_EQ(document().Combo1.ListCount(), 10);
    EXPECT_EQ(document().Combo1.List(1), "3");
    EXPECT_EQ(windows.focused, &document().rtfText);
    const States shown = states_of(document());
    EXPECT_EQ(shown,
        with(shown,
            "Command1:Visible Command2:Visible SkipBtn:Visible SkipTxtBox:Visible UpDown1:Visible "
            "SkinLabel2:Visible AudioOutputCB:Visible Frame1:Visible ResumeBtn:Visible "
            "CoolBar1:Visible",
            "off"));

    document().Unload();
    EXPECT_EQ(file("setting1.txt"), before);
    EXPECT_EQ(file("setting3.txt"),
        file_of_lines({ "1", "3", "4", "5", "6", "7", "8", "9", "10", "11" }));
}

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

TEST_F(Documents, AMissingFileLeavesTheLinesOfTheOneBefore)
{
    files.files.erase("/home/conf//setting3.txt");
    start();
    ASSERT_EQ(boxes.shown.size(), 1u);
    EXPECT_EQ(boxes.shown[0].text, texts.with_value(2308, "/home/conf//setting3.txt"));
    const std::string before = file("setting1.txt");
    document().Unload();
    EXPECT_EQ(file("setting3.txt"), before);

    RunningProgram none;
    for (const char* name : { "1", "2", "3" })
        none.files.files.erase("/home/conf//setting" + std::string(name) + ".txt");
    none.start();
    EXPECT_EQ(none.boxes.take_shown().size(), 3u);
    EXPECT_EQ(none.document().VoiceCB.ListIndex, -1);
    EXPECT_EQ(none.document().Check1.Value, 1);
}

TEST_F(Documents, AnAddressIsKeptOnlyWithAPointAndTheWindowClosedLastDecides)
{
    const std::pair<const char*, const char*> cases[] = { { "Http://", "http://a.example/" },
        { "localhost", "http://a.example/" }, { "b.example", "b.example" } };
    for (const auto& [typed, stored] : cases) {
        StartedProgram other;
        other.document().Combo1.user_edit(typed);
        other.document().cpvSlider1.Value = 3;
        const std::shared_ptr<Form> first = other.document().shared_from_this();
        other.open_another().cpvSlider1.Value = -7;
        other.document().Unload();
        first->Unload();
        EXPECT_EQ(other.file("setting1.txt"),
            file_of_lines({ "48kHz 16Bit Stereo", " 0", " 3", " 1", stored }))
            << typed;
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
