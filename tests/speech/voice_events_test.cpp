#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

struct Words : StartedProgramTest {
    Words()
    {
        pane().set_Text(u"one two\nthree");
        document().SpeakBtn.user_press();
    }
};

TEST_F(Words, AreSelectedAsTheyAreSpoken)
{
    voice().start_stream();
    document().Play.Enabled = true;
    voice().word(4, 3);
    EXPECT_EQ(selected() + ", " + panel(1), "two, Line Number: 1");
    EXPECT_TRUE(document().Play.Enabled); // a word costs no round of all controls
    voice().word(8, 5);
    EXPECT_EQ(selected() + ", " + panel(1), "three, Line Number: 2");
    voice().end_stream();
    EXPECT_EQ(selected(), "three");
    EXPECT_TRUE(document().SpeakBtn.Enabled);

    document().SpeakBtn.user_press();
    EXPECT_EQ(voice().last_text, "three");
    voice().word(1, 4);
    EXPECT_EQ(selected(), "hree"); // counted from where the spoken text begins
}

TEST_F(Words, ThatLieOutsideTheTextAreSkipped)
{
    struct Case {
        int place; // where the spoken text begins
        int position, length; // the word
        const char* selected;
    };
    const Case cases[] = { { 0, 4, 3, "two" }, { 0, -1, 3, "two" }, { 2147483647, 1, 3, "two" },
        { -2147483647, -2, 3, "two" }, { 0, 12, 50, "e" }, { 0, 4, -1, "" }, { 0, 0, 3, "one" },
        { 2147483640, 7, 1, "" } };
    for (const Case& row : cases) {
        document().speech.place.position = row.place;
        voice().word(row.position, row.length);
        EXPECT_EQ(selected(), row.selected) << row.position;
    }
}

TEST_F(Words, OfAFileOrTheClipboardAreNotSelected)
{
    voice().word(0, 3);
    document().chkSpFlagIsFilename.Value = 1;
    voice().word(4, 3);
    EXPECT_EQ(selected(), "one");
    document().chkSpFlagIsFilename.Value = 0;
    document().StopBtn.user_press();

    document().ReadClipbdBtn.user_press();
    voice().word(4, 3);
    EXPECT_EQ(selected(), "one");
    // Coming back to the document makes them count again, at a meaningless place.
    frmDocument& first = document();
    open_another();
    first.user_activated();
    voice().word(4, 3);
    EXPECT_EQ(selected(), "two");
}

TEST_F(Words, AVoiceInTheTextMovesTheVoiceBox)
{
    asked();
    for (const char* stranger : { "bob", "Carl", "" })
        voice().events().Voice_VoiceChange(1, 0, token_named(stranger));
    EXPECT_EQ(document().VoiceCB.ListIndex, 0);
    EXPECT_EQ(asked(), "");

    voice().events().Voice_VoiceChange(1, 0, token_named("Bob"));
    EXPECT_EQ(document().VoiceCB.ListIndex, 1);
    EXPECT_EQ(asked(), "Voice Bob");
    EXPECT_EQ(panel(2), "Speaker:  Bob");
    voice().events().Voice_VoiceChange(1, 0, token_named("Anna"));
    EXPECT_EQ(document().VoiceCB.ListIndex, 0);
}

TEST_F(Words, ThatNobodyHearsAreToldInTheStatusBar)
{
    voice().events().Voice_AudioOutput(false);
    EXPECT_EQ(
        panel(2) + ", " + panel(3), "No sound: the output does not answer, Speaking Speed: 0");
    voice().events().Voice_AudioOutput(true);
    EXPECT_EQ(panel(2), "Speaker:  Anna");
}

} // namespace
} // namespace tessavox::tests
