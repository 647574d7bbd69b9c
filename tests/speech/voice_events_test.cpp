#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

struct Words : testing::Test {
    Words()
    {
        program.start();
        program.pane().set_Text(u"one two\nthree");
    }
    frmDocument& document() { return program.active(); }
    VoiceRecord& voice() { return program.speech.voice(); }
    std::string selected() { return to_utf8(program.pane().SelText().view()); }
    RunningProgram program;
};

TEST_F(Words, AreSelectedAsTheyAreSpoken)
{
    document().speech.reading.SpeakBtn_Click();
    voice().start_stream();
    document().Play.Enabled = true;
    voice().word(4, 3);
    EXPECT_EQ(selected(), "two");
    EXPECT_EQ(program.panel(1), "Line Number: 1");
    EXPECT_TRUE(document().Play.Enabled); // a word costs no round of all controls
    voice().word(8, 5);
    EXPECT_EQ(selected(), "three");
    EXPECT_EQ(program.panel(1), "Line Number: 2");
    voice().end_stream();
    EXPECT_EQ(selected(), "three");
    EXPECT_TRUE(document().SpeakBtn.Enabled);

    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(voice().last_text, "three");
    voice().word(0, 5);
    EXPECT_EQ(program.pane().SelStart(), 8);
}

TEST_F(Words, CountFromWhereTheSpokenTextBegins)
{
    program.pane().user_selects(4, 0);
    document().speech.reading.SpeakBtn_Click();
    voice().word(4, 5);
    EXPECT_EQ(selected(), "three");
}

TEST_F(Words, ThatLieOutsideTheTextAreSkipped)
{
    document().speech.reading.SpeakBtn_Click();
    voice().word(4, 3);
    voice().word(-1, 3); // before the text
    EXPECT_EQ(selected(), "two");
    document().speech.place.position = 2147483647;
    voice().word(1, 3); // beyond any offset
    EXPECT_EQ(selected(), "two");
    document().speech.place.position = 0;
    voice().word(12, 50); // cut at the end
    EXPECT_EQ(selected(), "e");
    voice().word(0, -1);
    EXPECT_EQ(selected(), "");
    voice().word(0, 3);
    EXPECT_EQ(selected(), "one");
}

TEST_F(Words, OfAFileOrTheClipboardAreNotSelected)
{
    document().speech.reading.SpeakBtn_Click();
    voice().word(0, 3);
    document().chkSpFlagIsFilename.Value = 1;
    voice().word(4, 3);
    EXPECT_EQ(selected(), "one");
    document().speech.session.StopBtn_Click();
    document().chkSpFlagIsFilename.Value = 0;

    document().speech.reading.ReadClipbdBtn_Click();
    voice().word(4, 3);
    EXPECT_EQ(selected(), "one");
    // Coming back to the document makes them count again, at a meaningless place.
    program.main_window().mnuFileNew.run();
    static_cast<Form&>(*program.windows.open_forms[1]).user_activated();
    voice().word(4, 3);
    EXPECT_EQ(selected(), "two");
}

TEST_F(Words, ChangeNothingWhenEventsAreShown)
{
    document().chkShowEvents.Value = 1;
    document().speech.reading.SpeakBtn_Click();
    SpeechVoiceEvents& events = voice().events();
    events.Voice_StartStream(1, 0);
    events.Voice_Bookmark(1, 0, "a", 1);
    events.Voice_Sentence(1, 0, 4, 3);
    events.Voice_Phoneme(1, 0, 10, 2, 0, 1);
    events.Voice_Viseme(1, 0, 10, 2, 0, 1);
    events.Voice_AudioLevel(1, 0, 50);
    events.Voice_EnginePrivate(1, 0, 7);
    EXPECT_EQ(selected(), "one two\nthree");
    events.Voice_Word(1, 0, 4, 3);
    EXPECT_EQ(selected(), "two");
    EXPECT_TRUE(document().speech.session.m_bSpeaking());
}

TEST_F(Words, AVoiceInTheTextMovesTheVoiceBox)
{
    document().speech.reading.SpeakBtn_Click();
    voice().take_calls();
    for (const char* stranger : { "bob", "Carl", "" })
        voice().events().Voice_VoiceChange(1, 0, token_named(stranger));
    EXPECT_EQ(document().VoiceCB.ListIndex, 0);
    EXPECT_TRUE(voice().calls.empty());

    voice().events().Voice_VoiceChange(1, 0, token_named("Bob"));
    EXPECT_EQ(document().VoiceCB.ListIndex, 1);
    EXPECT_EQ(voice().take_calls(), (std::vector<std::string>{ "Voice Bob" }));
    EXPECT_EQ(program.panel(2), "Speaker:  Bob");
}

TEST_F(Words, InTheBackgroundMoveTheirOwnDocument)
{
    frmDocument& behind = document();
    behind.speech.reading.SpeakBtn_Click();
    program.main_window().mnuFileNew.run();
    document().speech.reading.SpeakBtn_Click(); // empty: refused
    program.pane().set_Text(u"front");
    document().speech.reading.SpeakBtn_Click();
    voice().word(4, 3);
    EXPECT_EQ(to_utf8(behind.rtfText->SelText().view()), "two");
    EXPECT_EQ(selected(), "front");

    // The shared menus go idle with whichever document ends; its neighbour speaks on.
    voice().end_stream();
    EXPECT_TRUE(program.main_window().mnuCtlSpeak.Enabled);
    EXPECT_TRUE(document().speech.session.m_bSpeaking());
    EXPECT_FALSE(behind.speech.session.m_bSpeaking());
}

} // namespace
} // namespace tessavox::tests
