#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using Panel = ProgramTest;

TEST_F(Panel, FormatsCarryTheirPublishedNumbersButForTheFirst)
{
    start();
    const ComboBox& list = document().FormatCB;
    ASSERT_EQ(list.ListCount(), 36);
    const char* const rates[] = { "8", "11", "12", "16", "22", "24", "32", "44", "48" };
    for (int type = 4; type < 40; ++type) {
        const std::string text = std::string(rates[(type - 4) / 4]) + "kHz "
            + (type & 2 ? "16" : "8") + "Bit " + (type & 1 ? "Stereo" : "Mono");
        EXPECT_EQ(list.List(type - 4), text);
        EXPECT_EQ(list.ItemData(type - 4), type == 4 ? 6 : type) << text;
    }
}

TEST_F(Panel, TheLoadAsksTheVoiceInThisOrder)
{
    file("setting1.txt") = file_of_lines({ "16kHz 8Bit Mono", " 1", "-3", " 0", "x.y" });
    main.Show();
    EXPECT_EQ(asked(),
        "Voice Bob; Volume 100; AllowFormatChanges false; device.FormatType 16; "
        "AudioOutputStream device; AudioOutput Speakers; AllowFormatChanges false; "
        "device.FormatType 16; AudioOutputStream device");
    EXPECT_EQ(document().cpvSlider1.Value, -3);
    EXPECT_EQ(document().cpvSlider2.Value, 100);
    EXPECT_EQ(document().Check1.Value, 0);
    EXPECT_EQ(document().chkSpFlagIsXML.Value + document().chkSpFlagAync.Value
            + document().chkSpFlagPurgeBeforeSpeak.Value,
        3);
    EXPECT_EQ(document().speech.flags.m_lSpeakFlags(), 11);
    EXPECT_EQ(panel(2) + ", " + panel(3), "Speaker:  Bob, Speaking Speed: -3");
    EXPECT_EQ(document().speech.place.view_status, 1);
    EXPECT_EQ(state(), "idle");
    EXPECT_FALSE(document().StopBtn.Enabled || main.mnuCtlStop.Enabled);
}

TEST_F(Panel, AFailureOfTheVoiceSkipsOneStepOrAllThatFollow)
{
    start();
    using D = DocumentControls;
    const struct {
        const char* failing;
        ComboBox D::*list;
        int chosen;
        const char* asked;
    } cases[] = { { "AllowFormatChanges", &D::FormatCB, 14,
                      "device.FormatType 18; AudioOutputStream device" },
        { "device.FormatType", &D::FormatCB, 14,
            "AllowFormatChanges false; AudioOutputStream device" },
        { "AudioOutputStream", &D::FormatCB, 14, "AllowFormatChanges false; device.FormatType 18" },
        { "AudioOutput", &D::AudioOutputCB, 0, "" }, // no format either
        { "Voice", &D::VoiceCB, 1, "" } };
    for (const auto& row : cases) {
        voice().mend();
        voice().fail(row.failing);
        (document().*row.list).user_choose(row.chosen);
        EXPECT_EQ(asked(), row.asked) << row.failing;
    }
    EXPECT_EQ(panel(2), "Speaker:  Bob");
}

TEST_F(Panel, ResetRestoresTheDefaultsInThisOrder)
{
    start();
    CheckBox* const unticked[] = { &document().chkSpFlagPersistXML,
        &document().chkSpFlagNLPSpeakPunc, &document().chkSpFlagIsFilename };
    CheckBox* const ticked[]
        = { &document().Check1, &document().chkSpFlagAync, &document().chkSpFlagPurgeBeforeSpeak };
    for (const bool paused : { true, false }) {
        document().VoiceCB.user_choose(1);
        document().FormatCB.Text = "8kHz 8Bit Mono";
        document().cpvSlider1.user_drag(4);
        document().cpvSlider2.user_drag(4);
        document().SkipTxtBox.Text = "9";
        for (CheckBox* box : unticked)
            box->Value = 1;
        for (CheckBox* box : ticked)
            box->Value = 0;
        document().speech.session.UpdateSpeechControls(true, paused);
        document().ResetBtn.Enabled = true;
        asked();

        document().ResetBtn.user_press();

        EXPECT_EQ(asked(),
            "AudioOutput Speakers; AllowFormatChanges false; device.FormatType 6; "
            "AudioOutputStream device; AudioOutput default; Voice Anna; AllowFormatChanges false; "
            "device.FormatType 39; AudioOutputStream device; Volume 100; Rate 0"
                + std::string(paused ? "; Resume" : ""));
        EXPECT_EQ(document().FormatCB.Text, "48kHz 16Bit Stereo");
        EXPECT_EQ(document().cpvSlider1.Value, 0);
        EXPECT_EQ(document().cpvSlider2.Value, 100);
        EXPECT_EQ(document().SkipTxtBox.Text, "0");
        for (const CheckBox* box : unticked)
            EXPECT_EQ(box->Value, 0) << box->name();
        for (const CheckBox* box : ticked)
            EXPECT_EQ(box->Value, 1) << box->name();
        EXPECT_EQ(state(), "idle");
        // The state comes last and offers the tray's entry again, although reading is automatic.
        EXPECT_TRUE(main.mnuTrayReadClipboard.Enabled);
    }
}

TEST_F(Panel, ACompanionProgramCanChangeVoiceAndSpeed)
{
    struct Case {
        std::initializer_list<const char*> flags;
        const char* voice; // in the settings
        const char* speed;
        const char* asked;
        const char* panels;
    };
    const Case cases[]
        = { { { "1", "0", "0", "0" }, " 1", " 7", "Voice Bob; Voice Bob", "Speaker:  Bob, before" },
              { { "1", "1", "0", "0" }, " 9", " 7", "Voice Anna", // there is no such voice
                  "Speaker:  Anna, before" },
              { { "0", "1", "0", "0" }, " 1", " 7", "Rate 7", "before, Speaking Speed: 7" },
              { { "0", "1", "0", "0" }, " 1", " 11", "Rate 0", "before, Speaking Speed: 0" } };
    for (const Case& row : cases) {
        StartedProgram other;
        other.file("web.txt") = file_of_lines({ "0", "0", "0", "0" });
        other.file("setting1.txt") = file_of_lines({ "", row.voice, row.speed, " 1", "" });
        other.file("control.txt") = file_of_lines(row.flags);
        for (const int panel : { 2, 3 })
            other.main.sbStatusBar.PanelText(panel) = "before";
        other.main.Timer2.tick();
        EXPECT_EQ(other.asked(), row.asked);
        EXPECT_EQ(other.panel(2) + ", " + other.panel(3), row.panels);
        EXPECT_EQ(other.file("control.txt"), file_of_lines({ "0", "0", "0", "0" }));
    }
}

} // namespace
} // namespace tessavox::tests
