#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

struct Waves : StartedProgramTest {
    Waves()
    {
        document().FormatCB.Text = "16kHz 8Bit Mono";
        clipboard.text = u"copied";
        asked();
    }
    void save() { document().SpeaktofileBtn.user_press(); }
};

TEST_F(Waves, ASaveSwapsTheOutputAndSwapsItBack)
{
    dialogs.answers = { "/out.wav" };
    pane().user_selects(6, 0);
    save();
    EXPECT_EQ(asked(),
        "Voice Anna; Rate 0; file.FormatType 16; file.Open /out.wav 3; AllowFormatChanges false; "
        "AudioOutputStream file; Speak \"world.\" 11; WaitUntilDone 0; WaitUntilDone -1; "
        "AudioOutput Speakers; AllowFormatChanges false; device.FormatType 16; "
        "AudioOutputStream device; file.Close");
    EXPECT_EQ(document().speech.place.position, 6);
    EXPECT_EQ(selected(), "world.");
    EXPECT_EQ(screen.pointer, MousePointer::normal);
    ASSERT_EQ(boxes.shown.size(), 1u);
    EXPECT_EQ(boxes.shown[0].text, "WAV file successfully written!");
    EXPECT_EQ(boxes.shown[0].title, "File Saved");
    EXPECT_EQ(boxes.shown[0].buttons, MessageButtons::ok);
    EXPECT_TRUE(dialogs.requests[0].overwrite_prompt);
}

TEST_F(Waves, OutsideTheTextViewAndByTheClipboardCommandTheClipboardIsSaved)
{
    for (const char16_t* text : { u"copied", u"" }) {
        for (const int view : { 1, 2 }) {
            clipboard.text = text;
            document().speech.place.view_status = static_cast<std::int16_t>(view);
            dialogs.answers = { "/out.wav" };
            if (view == 1)
                document().ReadClipboardtoFile.user_press();
            else
                save();
            EXPECT_EQ(voice().last_text, to_utf8(text));
            EXPECT_EQ(boxes.take_shown().size(), 1u);
            EXPECT_EQ(pane().SelLength(), 0);
        }
    }
}

TEST_F(Waves, ThatFailIsSilentTouchesNoControlAndLeavesTheVoiceInItsFile)
{
    struct Case {
        const char* failing;
        const char* last_call; // that went through
        bool hourglass = true;
    };
    const Case cases[] = { { "cancelled", "Rate 0", false }, { "Voice", "", false },
        { "Rate", "Voice Anna", false }, { "file.FormatType", "Rate 0" },
        { "file.Open", "file.FormatType 16" }, { "AllowFormatChanges", "file.Open /out.wav 3" },
        { "AudioOutputStream", "AllowFormatChanges false" }, { "Speak", "AudioOutputStream file" },
        { "WaitUntilDone", "Speak \"Hello world.\" 11" },
        { "file.Close", "AudioOutputStream device" } };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.failing);
        voice().fail(row.failing);
        dialogs.answers = { "/out.wav" };
        if (row.failing == std::string("cancelled"))
            dialogs.answers = { std::nullopt };
        screen.pointer = MousePointer::normal;
        document().Play.Enabled = false;
        save();
        EXPECT_EQ(
            dialogs.answers.empty(), *row.last_call == 0 || row.last_call[0] == 'V' ? false : true);
        EXPECT_EQ(screen.pointer == MousePointer::hourglass, row.hourglass);
        const std::string calls = asked();
        EXPECT_TRUE(calls.ends_with(row.last_call)) << calls;
        EXPECT_TRUE(boxes.shown.empty());
        EXPECT_FALSE(document().Play.Enabled);
        voice().mend();
    }
    document().FormatCB.ListIndex = -1;
    dialogs.answers = { "/out.wav" };
    save();
    EXPECT_EQ(asked(), "Voice Anna; Rate 0");
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(Waves, TheUserCanEndASaveAndKeepsWhatIsWritten)
{
    dialogs.answers = { "/out.wav" };
    voice().waits_until_done = 100;
    voice().spoken_units = 3;
    blocking_work.looks_until_escape = 1;
    save();
    EXPECT_EQ(asked(),
        "Voice Anna; Rate 0; file.FormatType 16; file.Open /out.wav 3; AllowFormatChanges false; "
        "AudioOutputStream file; Speak \"Hello world.\" 11; WaitUntilDone 0; WaitUntilDone 0; "
        "Speak \"\" 2; WaitUntilDone -1; AudioOutput Speakers; AllowFormatChanges false; "
        "device.FormatType 16; AudioOutputStream device; file.Close");
    EXPECT_EQ(blocking_work.seen_share, 0.25);
    EXPECT_EQ(blocking_work.shown, texts.LoadResString(2304));
    EXPECT_EQ(screen.pointer, MousePointer::normal);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(Waves, TheDialogOfAPlayBeginsWithTheNameOfBefore)
{
    // A save begins without a name, and even a cancelled one makes the dialog forget the last.
    const char* const rows[][4] = { // the command, its answer, and what its dialog began with
        { "play", "/a.wav", "", "Speak a Wave File" },
        { "play", "", "/a.wav", "Speak a Wave File" }, { "save", "", "", "Save to a Wave File" },
        { "play", "", "", "Speak a Wave File" },
        { "clipboard", "/b.wav", "", "Save to a Wave File" },
        { "play", "", "/b.wav", "Speak a Wave File" }
    };
    for (const auto& [command, answer, name, title] : rows) {
        dialogs.answers = { *answer ? std::optional<std::string>(answer) : std::nullopt };
        if (command == std::string("play"))
            document().Play.user_press();
        else if (command == std::string("save"))
            save();
        else
            document().ReadClipboardtoFile.user_press();
        EXPECT_EQ(state(), command == std::string("play") && *answer ? "speaking" : "idle");
        document().speech.session.UpdateSpeechControls(false, false);
        const FileDialogRequest& request = dialogs.requests.back();
        EXPECT_EQ(request.FileName, name);
        EXPECT_EQ(request.DialogTitle, title);
        EXPECT_EQ(request.Filter, "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav");
        EXPECT_EQ(request.FilterIndex, 2);
    }
}

} // namespace
} // namespace tessavox::tests
