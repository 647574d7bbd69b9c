#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

using Calls = std::vector<std::string>;

struct Panel : testing::Test {
    void start() { program.start(); }
    frmDocument& document() { return program.active(); }
    VoiceRecord& voice() { return program.speech.voice(); }
    RunningProgram program;
};

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
    program.files.files["/home/conf//setting1.txt"]
        = file_of_lines({ "16kHz 8Bit Mono", " 1", "-3", " 0", "x.y" });
    program.program.Main();
    EXPECT_EQ(voice().take_calls(),
        (Calls{ "Voice Bob", "Volume 100", "AllowFormatChanges false", "device.FormatType 16",
            "AudioOutputStream device", "AudioOutput Speakers", "AllowFormatChanges false",
            "device.FormatType 16", "AudioOutputStream device" }));
    EXPECT_EQ(document().cpvSlider1.Value, -3);
    EXPECT_EQ(document().cpvSlider2.Value, 100);
    EXPECT_EQ(document().Check1.Value, 0);
    EXPECT_EQ(program.panel(2), "Speaker:  Bob");
    EXPECT_EQ(program.panel(3), "Speaking Speed: -3");
    EXPECT_FALSE(document().AudioOutputCB.Visible);
}

TEST_F(Panel, BarsReachTheVoiceByDraggingOnly)
{
    start();
    document().cpvSlider1.user_step(-10);
    document().cpvSlider1.Value = 5;
    document().cpvSlider2.user_step(70);
    EXPECT_EQ(voice().take_calls(), Calls{});
    EXPECT_EQ(program.panel(3), "Speaking Speed: 0");
    document().cpvSlider1.user_drag(-10);
    document().cpvSlider2.user_drag(40);
    EXPECT_EQ(voice().take_calls(), (Calls{ "Rate -10", "Volume 40" }));
    EXPECT_EQ(program.panel(3), "Speaking Speed: -10");
}

TEST_F(Panel, AVoiceThatCannotBeChosenStillShows)
{
    start();
    voice().fail("Voice");
    document().VoiceCB.user_choose(1);
    EXPECT_EQ(program.panel(2), "Speaker:  Bob");
}

TEST_F(Panel, ResetRestoresTheDefaultsInThisOrder)
{
    start();
    document().Check1.Value = 0;
    document().VoiceCB.user_choose(1);
    document().FormatCB.Text = "8kHz 8Bit Mono";
    document().cpvSlider1.user_drag(4);
    document().cpvSlider2.user_drag(4);
    document().SkipTxtBox.Text = "9";
    CheckBox* const unticked[] = { &document().chkSpFlagPersistXML,
        &document().chkSpFlagNLPSpeakPunc, &document().chkSpFlagIsFilename };
    for (CheckBox* box : unticked)
        box->Value = 1;
    document().speech.session.PauseBtn_Click();
    voice().take_calls();

    document().speech.panel.ResetBtn_Click();

    const Calls format{ "AllowFormatChanges false", "device.FormatType 39",
        "AudioOutputStream device" };
    EXPECT_EQ(voice().take_calls(),
        (Calls{ "AudioOutput Speakers", "AllowFormatChanges false", "device.FormatType 6",
            "AudioOutputStream device", "AudioOutput default", "Voice Anna", format[0], format[1],
            format[2], "Volume 100", "Rate 0", "Resume" }));
    EXPECT_EQ(document().Check1.Value, 1);
    EXPECT_EQ(document().FormatCB.Text, "48kHz 16Bit Stereo");
    EXPECT_EQ(document().SkipTxtBox.Text, "0");
    for (const CheckBox* box : unticked)
        EXPECT_EQ(box->Value, 0) << box->name();
    EXPECT_FALSE(document().speech.session.m_bPaused());
    // The state comes last and offers the tray's entry again, although reading is automatic now.
    EXPECT_TRUE(program.main_window().mnuTrayReadClipboard.Enabled);
}

TEST_F(Panel, AutomaticReadingTakesTheTrayEntryAway)
{
    start();
    document().Check1.user_toggle();
    EXPECT_TRUE(program.main_window().mnuTrayReadClipboard.Enabled);
    document().Check1.user_toggle();
    EXPECT_FALSE(program.main_window().mnuTrayReadClipboard.Enabled);
}

TEST_F(Panel, ACompanionProgramCanChangeVoiceAndSpeed)
{
    start();
    program.files.files["/home/conf//setting1.txt"] = file_of_lines({ "", " 1", " 7", " 1", "" });
    program.files.files["/home/conf//control.txt"] = file_of_lines({ "1", "0", "0", "0" });
    document().speech.panel.Adjustspeaker();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Bob", "Voice Bob" }));
    EXPECT_EQ(program.panel(2), "Speaker:  Bob");
    EXPECT_EQ(document().cpvSlider1.Value, 0);
    EXPECT_EQ(program.file("/control.txt"), file_of_lines({ "0", "0", "0", "0" }));

    // A voice that isn't there changes nothing, but the panel tells this document's voice again.
    program.files.files["/home/conf//setting1.txt"] = file_of_lines({ "", " 9", " 7", " 1", "" });
    program.main_window().sbStatusBar.PanelText(2) = "Speaker:  of another document";
    document().speech.panel.Adjustspeaker();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Bob" }));
    EXPECT_EQ(program.panel(2), "Speaker:  Bob");

    program.files.files["/home/conf//control.txt"] = file_of_lines({ "0", "1", "0", "0" });
    document().speech.panel.Adjustspeed();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Rate 7" }));
    EXPECT_EQ(program.panel(3), "Speaking Speed: 7");
    EXPECT_EQ(program.file("/control.txt"), file_of_lines({ "0", "0", "0", "0" }));
}

TEST_F(Panel, WithoutAVoiceTheWindowLoadsToItsEnd)
{
    program.files.files["/home/conf//setting1.txt"] = file_of_lines({ "", " 1", "-3", " 0", "" });
    program.speech.refuses_voices = true;
    start();
    EXPECT_EQ(program.panel(3), "Speaking Speed: -3");
    EXPECT_EQ(program.pane().font_name, "Comic Sans MS");
    document().speech.reading.SpeakBtn_Click();
    EXPECT_FALSE(document().speech.session.m_bSpeaking());
    EXPECT_TRUE(program.main_window().Unload());
}

TEST_F(Panel, WithoutVoicesAndOutputsItStillLoads)
{
    program.speech.voices.clear();
    program.speech.outputs.clear();
    start();
    EXPECT_EQ(document().VoiceCB.ListIndex, -1);
    EXPECT_EQ(document().AudioOutputCB.Text, "No audio ouput object available");
    EXPECT_FALSE(document().AudioOutputCB.Enabled);
    EXPECT_EQ(program.panel(2), "Speaker:  ");
    document().speech.panel.ResetBtn_Click();
    EXPECT_EQ(document().FormatCB.Text, "48kHz 16Bit Stereo");
}

} // namespace
} // namespace tessavox::tests
