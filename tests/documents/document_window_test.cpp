#include "tests/fakes/running_program.h"

#include "persist/settings_files.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

struct Documents : testing::Test {
    frmMain& main_window() { return program.main_window(); }
    frmDocument& document() { return program.active(); }
    void open_another() { main_window().mnuFileNew.run(); }
    RunningProgram program;
};

TEST_F(Documents, OpenWithTheSettingsOfTheFiles)
{
    program.files.files["/home/conf//setting2.txt"] = file_of_lines({ "Serif", " 10.5", "True" });
    program.files.files["/home/conf//setting3.txt"] = file_of_lines({ "a.example", "", "b" });
    program.start();
    EXPECT_EQ(program.pane().font_name, "Serif");
    EXPECT_EQ(program.pane().font_size, 10);
    EXPECT_TRUE(program.pane().font_bold);
    EXPECT_EQ(program.pane().selection_font_size, 12);
    EXPECT_FALSE(program.pane().hide_selection);
    ASSERT_EQ(document().Combo1.ListCount(), 2);
    EXPECT_EQ(document().Combo1.List(1), "b");
    EXPECT_EQ(document().Combo1.Text, "Http://");
    EXPECT_EQ(program.windows.focused, &document().rtfText);
    for (const Control* control : std::initializer_list<const Control*>{ &document().Command1,
             &document().Command2, &document().SkipBtn, &document().SkipTxtBox, &document().UpDown1,
             &document().SkinLabel2, &document().AudioOutputCB, &document().Frame1 })
        EXPECT_FALSE(control->Visible) << control->name();

    document().Unload();
    EXPECT_EQ(program.file("/setting1.txt"),
        file_of_lines({ "48kHz 16Bit Stereo", " 0", " 0", " 1", "http://a.example/" }));
    EXPECT_EQ(program.file("/setting3.txt"), file_of_lines({ "a.example", "b" }));
}

TEST_F(Documents, HostileSettingsAreSteppedOver)
{
    struct Case {
        const char* what;
        const char* file;
        std::string bytes;
    };
    std::string long_history = "\"\r\n";
    for (int i = 0; i < 100; ++i)
        long_history += "h.example\r\n";
    const Case cases[] = {
        { "empty", "/setting1.txt", "" },
        { "one quote", "/setting1.txt", "\"" },
        { "no numbers", "/setting1.txt", file_of_lines({ "a", "b", "c", "d", "e" }) },
        { "out of range", "/setting1.txt", file_of_lines({ "", "2", "11", "3", "" }) },
        { "huge", "/setting1.txt", file_of_lines({ "", "99999", "-1e9", "1e99", "" }) },
        { "no text at all", "/setting1.txt", std::string("\xFF\xFE\0\0\x80\r\r\r\r", 9) },
        { "a font of nothing", "/setting2.txt", file_of_lines({ "", "-1", "maybe" }) },
        { "a long history", "/setting3.txt", long_history + "\"\r\n" },
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.what);
        RunningProgram other;
        other.files.files[std::string("/home/conf/") + row.file] = row.bytes;
        other.start();
        EXPECT_TRUE(other.boxes.shown.empty());
        EXPECT_EQ(other.active().cpvSlider1.Value, 0);
        EXPECT_EQ(other.active().Check1.Value, 1);
        EXPECT_EQ(other.pane().font_name, "Comic Sans MS");
        EXPECT_EQ(other.pane().font_size, 12);
        EXPECT_TRUE(other.main_window().Unload());
    }
}

TEST_F(Documents, WithoutAVoiceInTheSettingsNoneIsChosenNextTimeEither)
{
    program.files.files["/home/conf//setting1.txt"] = file_of_lines({ "", "-1", " 0", " 1", "" });
    program.start();
    EXPECT_EQ(document().VoiceCB.ListIndex, -1);
    document().Unload();
    EXPECT_EQ(program.file("/setting1.txt"), file_of_lines({ "", "-1", " 0", " 1", "" }));
}

TEST_F(Documents, AMissingFileLeavesTheLinesOfTheOneBefore)
{
    program.files.files.erase("/home/conf//setting3.txt");
    program.start();
    const auto boxes = program.boxes.take_shown();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text,
        "The software setting files /home/conf//setting3.txt have been moved, please reinstall our "
        "software again");
    document().Unload();
    EXPECT_EQ(program.file("/setting3.txt"),
        file_of_lines({ "48kHz 16Bit Stereo", " 0", " 0", " 1", "http://a.example/" }));

    RunningProgram none;
    for (const char* file : { "1", "2", "3" })
        none.files.files.erase("/home/conf//setting" + std::string(file) + ".txt");
    none.start();
    EXPECT_EQ(none.boxes.take_shown().size(), 3u);
    EXPECT_EQ(none.active().VoiceCB.ListIndex, -1);
    EXPECT_EQ(none.active().FormatCB.ListIndex, -1);
    EXPECT_EQ(none.active().Check1.Value, 1);
}

TEST_F(Documents, AnAddressIsKeptOnlyWithAPoint)
{
    const std::pair<const char*, const char*> cases[] = { { "Http://", "http://a.example/" },
        { "localhost", "http://a.example/" }, { "b.example", "b.example" } };
    for (const auto& [typed, stored] : cases) {
        RunningProgram other;
        other.start();
        other.active().Combo1.user_edit(typed);
        other.active().Unload();
        EXPECT_EQ(other.file("/setting1.txt"),
            file_of_lines({ "48kHz 16Bit Stereo", " 0", " 0", " 1", stored }))
            << typed;
    }
}

TEST_F(Documents, TheOneClosedLastDecidesTheSettings)
{
    program.start();
    frmDocument& first = document();
    first.cpvSlider1.user_drag(3);
    open_another();
    document().cpvSlider1.user_drag(-7);
    document().Unload();
    first.Unload();
    EXPECT_EQ(program.file("/setting1.txt"),
        file_of_lines({ "48kHz 16Bit Stereo", " 0", " 3", " 1", "http://a.example/" }));
}

TEST_F(Documents, AreNumberedByTheLowestFreeSlot)
{
    program.start();
    open_another();
    frmDocument& second = document();
    open_another();
    EXPECT_EQ(document().Caption, "Document 3");
    EXPECT_EQ(document().Tag, "3");
    second.Unload();
    open_another();
    EXPECT_EQ(document().Caption, "Document 2");
}

TEST_F(Documents, TheThirtyFirstIsRefusedWithoutAWord)
{
    program.start();
    for (int i = 0; i < 40; ++i)
        open_another();
    EXPECT_EQ(program.windows.open_forms.size(), 31u); // with the main window
    EXPECT_EQ(document().Caption, "Document 30");
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Documents, ShowTheLineOfTheCaret)
{
    program.start();
    program.pane().set_Text(u"a\nb\nc");
    program.pane().user_selects(4, 0);
    EXPECT_EQ(program.panel(1), "Line Number: 3");
    program.pane().user_selects(0, 2);
    EXPECT_EQ(program.panel(1), "Line Number: 1");
}

TEST_F(Documents, StopTheirReadingWhenTheTabChanges)
{
    program.start();
    document().speech.reading.SpeakBtn_Click();
    document().speech.session.PauseBtn_Click();
    document().TabStrip1.Click();
    EXPECT_FALSE(document().speech.session.m_bSpeaking() || document().speech.session.m_bPaused());
    EXPECT_EQ(document().speech.place.view_status, 1);
}

} // namespace
} // namespace tessavox::tests
