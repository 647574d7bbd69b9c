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
    const FakeMessageBoxes::Box done{ "WAV file successfully written!", "File Saved",
        MessageButtons::ok, MessageIcon::none };
    EXPECT_EQ(boxes.shown, std::vector{ done });
    EXPECT_TRUE(dialogs.requests[0].overwrite_prompt);
}

TEST_F(Waves, OfAPageOrByTheClipboardCommandHoldWhatTheClipboardDoes)
{
    document().control_pos2(); // the page can have the focus
    for (const char16_t* text : { u"copied", u"" }) {
        for (const int view : { 1, 2 }) {
            clipboard.text = text;
            page().text = u"all of the page";
            page().selected.clear();
            document().Combo1.Text = "http://a.example/a.pdf"; // makes no difference here
            document().speech.place.view_status = static_cast<std::int16_t>(view);
            dialogs.answers = { "/out.wav" };
            if (view == 1)
                document().ReadClipboardtoFile.user_press();
            else
                save();
            EXPECT_EQ(voice().last_text, to_utf8(view == 1 ? text : page().text));
            EXPECT_EQ(boxes.take_shown().size(), 1u);
            EXPECT_EQ(pane().SelLength(), 0);
        }
    }
}

TEST_F(Waves, ThatFailAreSilentTouchNoControlAndLeaveTheVoiceInItsFile)
{
    const struct {
        const char* failing;
        const char* last_call; // that went through
        bool hourglass = true;
    } cases[] = { { "the user", "Rate 0", false }, { "Voice", "", false },
        { "Rate", "Voice Anna", false }, { "file.FormatType", "Rate 0" },
        { "file.Open", "file.FormatType 16" }, { "AllowFormatChanges", "file.Open /out.wav 3" },
        { "AudioOutputStream", "AllowFormatChanges false" }, { "Speak", "AudioOutputStream file" },
        { "WaitUntilDone", "Speak \"Hello world.\" 11" },
        { "file.Close", "AudioOutputStream device" } };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.failing);
        const bool cancelled = row.failing == std::string("the user");
        voice().mend();
        voice().fail(row.failing);
        dialogs.answers = { cancelled ? std::nullopt : std::optional<std::string>("/out.wav") };
        dialogs.requests.clear();
        screen.pointer = MousePointer::normal;
        document().Play.Enabled = false;
        save();
        EXPECT_EQ(dialogs.requests.size(), row.hourglass || cancelled ? 1u : 0u);
        EXPECT_EQ(screen.pointer == MousePointer::hourglass, row.hourglass);
        const std::string calls = asked();
        EXPECT_TRUE(calls.ends_with(row.last_call)) << calls;
        EXPECT_TRUE(boxes.shown.empty());
        EXPECT_FALSE(document().Play.Enabled);
    }
    voice().mend();
    document().FormatCB.ListIndex = -1;
    dialogs.answers = { "/out.wav" };
    save();
    EXPECT_EQ(asked(), "Voice Anna; Rate 0");
    EXPECT_TRUE(boxes.shown.empty());
}

} // namespace
} // namespace tessavox::tests
