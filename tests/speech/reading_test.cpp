#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using Reading = StartedProgramTest;

/// A command of a document and how it starts a reading.
struct Command {
    const char* name;
    std::function<void(DocumentSpeech&)> run;
    const char* asked; // of the voice, with the caret after "Hello"
    int position; // afterwards; it was 99
    int moves_selection; // isReadClipbd afterwards; it was 7
    bool keeps_pause = false;
    bool ends_failed = false; // whether a voice that fails leaves the document idle
};

const Command commands[]
    = { { "read", [](DocumentSpeech& speech) { speech.reading.SpeakBtn_Click(); },
            "Voice Bob; Rate -4; Volume 30; Speak \" world.\" 11", 5, 1, false, true },
          { "clipboard", [](DocumentSpeech& speech) { speech.reading.ReadClipbdBtn_Click(); },
              "Voice Bob; Rate -4; Speak \"copied\" 11", 5, 0 },
          { "readtext", [](DocumentSpeech& speech) { speech.reading.readtext(u"given"); },
              "Voice Bob; Rate -4; Speak \"given\" 11", 99, 0 },
          { "play", [](DocumentSpeech& speech) { speech.wave_file.Play_Click(); },
              "Speak \"/a.wav\" 15", 99, 7, true, true } };

TEST_F(Reading, StartsInTheSameWayFromIdleAndFromAStalePause)
{
    clipboard.text = u"copied";
    DocumentSpeech& speech_of = document().speech;
    document().VoiceCB.user_choose(1);
    document().cpvSlider1.user_step(-4);
    document().cpvSlider2.user_step(30);
    asked();
    for (const Command& row : commands) {
        for (const bool paused : { false, true }) {
            SCOPED_TRACE(row.name + std::string(paused ? " paused" : ""));
            speech_of.session.UpdateSpeechControls(false, paused);
            pane().user_selects(5, 0);
            dialogs.answers = { "/a.wav" };
            document().chkSpFlagIsFilename.Value = 0;
            speech_of.place.position = 99;
            speech_of.place.isReadClipbd = 7;
            row.run(speech_of);
            EXPECT_EQ(
                asked(), row.asked + std::string(paused && !row.keeps_pause ? "; Resume" : ""));
            EXPECT_EQ(state(), paused && row.keeps_pause ? "speaking paused" : "speaking");
            EXPECT_EQ(speech_of.place.position, row.position);
            EXPECT_EQ(speech_of.place.isReadClipbd, row.moves_selection);
            // A file name left over from a failed play is not taken for one again.
            speech_of.session.UpdateSpeechControls(false, false);
            document().chkSpFlagIsFilename.Value = 1;
            dialogs.answers = { "/a.wav" };
            row.run(speech_of);
            EXPECT_EQ(document().chkSpFlagIsFilename.Value, 0);
            asked();
        }
    }
}

TEST_F(Reading, GoesByItsOwnRuleOverAVoiceThatFails)
{
    const char* const calls[] = { "no voices", "Voice", "Rate", "Volume", "Speak" };
    for (const Command& row : commands) {
        for (const std::string failing : calls) {
            for (const bool paused : { false, true }) {
                SCOPED_TRACE(row.name + (" " + failing) + (paused ? " paused" : ""));
                StartedProgram other;
                DocumentSpeech& speech_of = other.document().speech;
                speech_of.session.UpdateSpeechControls(false, paused);
                speech_of.place.isReadClipbd = 7;
                other.dialogs.answers = { "/a.wav" };
                other.pane().user_selects(5, 0);
                if (failing == "no voices")
                    other.speech.voices.clear();
                other.voice().fail(failing);
                row.run(speech_of);
                const std::string step = failing == "no voices" ? "Voice" : failing;
                const bool failed
                    = row.ends_failed && std::string(row.asked).find(step) != std::string::npos;
                const bool still_paused = paused && (failed || row.keeps_pause);
                EXPECT_EQ(other.state(),
                    std::string(failed ? "idle" : "speaking") + (still_paused ? " paused" : ""));
                EXPECT_EQ(speech_of.place.isReadClipbd, row.moves_selection);
                EXPECT_TRUE(other.boxes.shown.empty());
            }
        }
    }
}

TEST_F(Reading, TakesTheSelectionOrElseTheRestOrElseTheWhole)
{
    const std::tuple<const char*, const char16_t*, int, int, const char*, int> cases[]
        = { { "caret at 1", u"abc", 1, 0, "bc", 1 }, { "caret at the top", u"abc", 0, 0, "abc", 0 },
              { "caret at the end", u"abc", 3, 0, "abc", 0 },
              { "before a last blank", u"ab ", 2, 0, "ab ", 0 },
              { "before two last blanks", u"ab  ", 2, 0, "  ", 2 },
              { "before a last line end", u"ab\n", 2, 0, "\n", 2 },
              { "a selection", u"one two three", 4, 3, "two", 4 },
              { "a selected blank", u"one two", 3, 1, " ", 3 },
              { "a tag is text", u"<silence msec=\"5\"/>a", 0, 0, "<silence msec=\"5\"/>a", 0 } };
    for (const auto& [what, text, start, length, spoken, position] : cases) {
        SCOPED_TRACE(what);
        pane().set_Text(text);
        pane().user_selects(start, length);
        document().SpeakBtn.user_press();
        EXPECT_EQ(voice().last_text, spoken);
        EXPECT_EQ(voice().last_slice.view().data(), pane().SelText().view().data()) << "a copy";
        EXPECT_EQ(document().speech.place.position, position);
        EXPECT_EQ(selected(), spoken);
        EXPECT_EQ(state(), "speaking");
        document().StopBtn.user_press();
    }
}

TEST_F(Reading, OfAnEmptyDocumentIsRefusedAndTouchesNothing)
{
    pane().set_Text(u"");
    document().chkSpFlagIsFilename.Value = 1;
    document().speech.session.UpdateSpeechControls(false, true);
    document().SpeakBtn.user_press();
    EXPECT_EQ(asked(), "Voice Anna; Rate 0; Volume 100");
    EXPECT_EQ(document().chkSpFlagIsFilename.Value, 1);
    EXPECT_EQ(state(), "idle paused");
}

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
    const struct {
        int place; // where the spoken text begins
        int position, length; // the word
        const char* selected;
    } cases[] = { { 0, 4, 3, "two" }, { 0, -1, 3, "two" }, { 2147483647, 1, 3, "two" },
        { -2147483647, -2, 3, "two" }, { 0, 12, 50, "e" }, { 0, 4, -1, "" }, { 0, 0, 3, "one" },
        { 2147483640, 7, 1, "" } };
    for (const auto& row : cases) {
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
