#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

using Calls = std::vector<std::string>;

struct Waves : testing::Test {
    Waves()
    {
        program.start();
        document().FormatCB.Text = "16kHz 8Bit Mono";
        voice().take_calls();
    }
    frmDocument& document() { return program.active(); }
    VoiceRecord& voice() { return program.speech.voice(); }
    RunningProgram program;
};

TEST_F(Waves, ASaveSwapsTheOutputAndSwapsItBack)
{
    program.dialogs.answers = { "/out.wav" };
    program.pane().user_selects(6, 0);
    document().SpeaktofileBtn.user_press();
    EXPECT_EQ(voice().take_calls(),
        (Calls{ "Voice Anna", "Rate 0", "file.FormatType 16", "file.Open /out.wav 3",
            "AllowFormatChanges false", "AudioOutputStream file", "Speak \"world.\" 11",
            "WaitUntilDone 0", "WaitUntilDone -1", "AudioOutput Speakers",
            "AllowFormatChanges false", "device.FormatType 16", "AudioOutputStream device",
            "file.Close" }));
    EXPECT_EQ(document().speech.place.position, 6);
    EXPECT_EQ(program.pane().SelLength(), 6);
    EXPECT_EQ(program.screen.pointer, MousePointer::normal);
    ASSERT_EQ(program.boxes.shown.size(), 1u);
    EXPECT_EQ(program.boxes.shown[0].text, "WAV file successfully written!");
    EXPECT_EQ(program.boxes.shown[0].title, "File Saved");

    const FileDialogRequest& request = program.dialogs.requests[0];
    EXPECT_EQ(request.DialogTitle, "Save to a Wave File");
    EXPECT_EQ(request.Filter, "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav");
    EXPECT_EQ(request.FilterIndex, 2);
    EXPECT_TRUE(request.overwrite_prompt);
}

TEST_F(Waves, OfTheClipboardTakesItsTextEvenIfThereIsNone)
{
    for (const char16_t* text : { u"copied", u"" }) {
        program.clipboard.text = text;
        program.dialogs.answers = { "/out.wav" };
        document().ReadClipboardtoFile.user_press();
        EXPECT_EQ(voice().last_text, to_utf8(text));
        EXPECT_EQ(program.boxes.take_shown().size(), 1u);
    }
}

TEST_F(Waves, AreRefusedWhileAReadingRuns)
{
    document().speech.reading.SpeakBtn_Click();
    document().speech.wave_file.menuFileSaveToWave_Click();
    document().speech.wave_file.DockSaveToWave_Click();
    document().speech.wave_file.Play_Click();
    EXPECT_TRUE(program.dialogs.requests.empty());
    EXPECT_TRUE(document().speech.session.m_bSpeaking());
}

TEST_F(Waves, ACancelledSaveLeavesNothingBehind)
{
    program.dialogs.answers = { std::nullopt };
    document().speech.wave_file.menuFileSaveToWave_Click();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Anna", "Rate 0" }));
    EXPECT_EQ(program.screen.pointer, MousePointer::normal);
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Waves, AFailedSaveIsSilentAndLeavesTheVoiceInItsFile)
{
    struct Case {
        const char* failing;
        bool asks;
        bool hourglass;
        int swaps;
        int swaps_back;
    };
    const Case cases[] = {
        { "Voice", false, false, 0, 0 },
        { "Rate", false, false, 0, 0 },
        { "file.FormatType", true, true, 0, 0 },
        { "file.Open", true, true, 0, 0 },
        { "AudioOutputStream", true, true, 0, 0 },
        { "Speak", true, true, 1, 0 },
        { "WaitUntilDone", true, true, 1, 0 },
        { "file.Close", true, true, 1, 1 },
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.failing);
        voice().mend();
        voice().fail(row.failing);
        program.dialogs.requests.clear();
        program.dialogs.answers = { "/out.wav" };
        program.screen.pointer = MousePointer::normal;
        voice().take_calls();
        document().speech.wave_file.menuFileSaveToWave_Click();

        EXPECT_EQ(!program.dialogs.requests.empty(), row.asks);
        EXPECT_EQ(program.screen.pointer == MousePointer::hourglass, row.hourglass);
        const Calls calls = voice().take_calls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "AudioOutputStream file"), row.swaps);
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "AudioOutput Speakers"), row.swaps_back);
        EXPECT_TRUE(program.boxes.shown.empty());
        EXPECT_FALSE(document().speech.session.m_bSpeaking());
    }
    voice().mend();
    program.dialogs.answers = { "/out.wav" };
    document().speech.wave_file.menuFileSaveToWave_Click();
    EXPECT_EQ(program.screen.pointer, MousePointer::normal);
    EXPECT_EQ(program.boxes.shown.size(), 1u);
}

TEST_F(Waves, TheUserCanEndASaveAndKeepsWhatIsWritten)
{
    program.dialogs.answers = { "/out.wav" };
    voice().waits_until_done = 100;
    voice().spoken_units = 3;
    program.blocking_work.looks_until_escape = 1;
    voice().take_calls();
    document().speech.wave_file.menuFileSaveToWave_Click();
    const Calls calls = voice().take_calls();
    const auto purge = std::find(calls.begin(), calls.end(), "Speak \"\" 2");
    ASSERT_NE(purge, calls.end());
    EXPECT_NE(std::find(purge, calls.end(), "AudioOutput Speakers"), calls.end());
    EXPECT_EQ(calls.back(), "file.Close");
    EXPECT_EQ(program.blocking_work.seen_share, 0.25);
    EXPECT_EQ(program.blocking_work.shown, program.texts.LoadResString(2304));
    EXPECT_EQ(program.screen.pointer, MousePointer::normal);
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Waves, WithoutAFormatNothingIsSaved)
{
    document().FormatCB.ListIndex = -1;
    program.dialogs.answers = { "/out.wav" };
    document().speech.wave_file.menuFileSaveToWave_Click();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Anna", "Rate 0" }));
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Waves, PlaySpeaksAFileByItsName)
{
    program.dialogs.answers = { "/a.wav" };
    document().Play.user_press();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Speak \"/a.wav\" 15" }));
    EXPECT_TRUE(document().speech.session.m_bSpeaking());
    EXPECT_EQ(document().chkSpFlagIsFilename.Value, 0);
    EXPECT_EQ(program.dialogs.requests[0].DialogTitle, "Speak a Wave File");
    document().speech.session.StopBtn_Click();

    // The dialog begins with the last name, and a cancelled one changes nothing.
    program.dialogs.answers = { std::nullopt };
    document().speech.wave_file.Play_Click();
    EXPECT_EQ(program.dialogs.requests[1].FileName, "/a.wav");
    EXPECT_FALSE(document().speech.session.m_bSpeaking());

    // A save begins without a name, and even a cancelled one makes the dialog forget the last.
    program.dialogs.answers = { std::nullopt, std::nullopt };
    document().speech.wave_file.menuFileSaveToWave_Click();
    document().speech.wave_file.Play_Click();
    EXPECT_EQ(program.dialogs.requests[2].FileName, "");
    EXPECT_EQ(program.dialogs.requests[3].FileName, "");
}

TEST_F(Waves, AFileThatCannotBePlayedReturnsToIdle)
{
    document().speech.session.PauseBtn_Click();
    voice().fail("Speak");
    program.dialogs.answers = { "/a.txt" };
    document().speech.wave_file.Play_Click();
    EXPECT_FALSE(document().speech.session.m_bSpeaking());
    EXPECT_TRUE(document().speech.session.m_bPaused());
    EXPECT_TRUE(document().SpeakBtn.Enabled);
}

} // namespace
} // namespace tessavox::tests
