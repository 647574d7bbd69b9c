#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

using Calls = std::vector<std::string>;

struct Reading : testing::Test {
    Reading() { program.start(); }
    frmDocument& document() { return program.active(); }
    VoiceRecord& voice() { return program.speech.voice(); }
    void put(const char16_t* text) { program.pane().set_Text(text); }
    RunningProgram program;
};

TEST_F(Reading, TakesTheSelectionOrElseTheRestOrElseTheWhole)
{
    struct Case {
        const char* what;
        const char16_t* text;
        int start;
        int length;
        const char* spoken;
        int position;
    };
    const Case cases[] = {
        { "caret at 1", u"abc", 1, 0, "bc", 1 },
        { "caret at the top", u"abc", 0, 0, "abc", 0 },
        { "caret at the end", u"abc", 3, 0, "abc", 0 },
        { "before a last blank", u"ab ", 2, 0, "ab ", 0 },
        { "before two last blanks", u"ab  ", 2, 0, "  ", 2 },
        { "before a last line end", u"ab\n", 2, 0, "\n", 2 },
        { "a selection", u"one two three", 4, 3, "two", 4 },
        { "a selected blank", u"one two", 3, 1, " ", 3 },
        { "a tag is text", u"<silence msec=\"5\"/>a", 0, 0, "<silence msec=\"5\"/>a", 0 },
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.what);
        put(row.text);
        program.pane().user_selects(row.start, row.length);
        voice().take_calls();
        document().SpeakBtn.user_press();
        EXPECT_EQ(voice().take_calls(),
            (Calls{ "Voice Anna", "Rate 0", "Volume 100",
                "Speak \"" + std::string(row.spoken) + "\" 11" }));
        EXPECT_EQ(document().speech.place.position, row.position);
        EXPECT_EQ(to_utf8(program.pane().SelText().view()), row.spoken);
        EXPECT_TRUE(document().speech.session.m_bSpeaking());
        document().speech.session.StopBtn_Click();
    }
}

TEST_F(Reading, OfAnEmptyDocumentIsRefused)
{
    put(u"");
    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Anna", "Rate 0", "Volume 100" }));
    EXPECT_FALSE(document().speech.session.m_bSpeaking());
    EXPECT_TRUE(document().SpeakBtn.Enabled);
}

TEST_F(Reading, IsRefusedWhileOneRuns)
{
    document().speech.reading.SpeakBtn_Click();
    for (const bool paused : { false, true }) {
        if (paused)
            document().speech.session.PauseBtn_Click();
        voice().take_calls();
        document().speech.reading.SpeakBtn_Click();
        document().speech.reading.ReadClipbdBtn_Click();
        EXPECT_EQ(voice().take_calls(), Calls{});
        EXPECT_EQ(document().speech.session.m_bPaused(), paused);
    }
}

TEST_F(Reading, ForcesThePanelOntoTheVoice)
{
    document().VoiceCB.user_choose(1);
    document().cpvSlider1.user_step(-4);
    document().cpvSlider2.user_step(30);
    voice().take_calls();
    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(voice().take_calls(),
        (Calls{ "Voice Bob", "Rate -4", "Volume 30", "Speak \"Hello world.\" 11" }));
}

TEST_F(Reading, ThatFailsReturnsToIdleAndKeepsThePause)
{
    for (const char* call : { "Voice", "Rate", "Volume", "Speak" }) {
        for (const bool paused : { false, true }) {
            SCOPED_TRACE(call);
            voice().mend();
            if (paused)
                document().speech.session.PauseBtn_Click();
            voice().fail(call);
            document().speech.reading.SpeakBtn_Click();
            EXPECT_FALSE(document().speech.session.m_bSpeaking());
            EXPECT_EQ(document().speech.session.m_bPaused(), paused);
        }
        document().speech.session.ResumeBtn_Click();
    }
    voice().mend();
    program.speech.voices.clear();
    document().speech.reading.SpeakBtn_Click();
    EXPECT_FALSE(document().speech.session.m_bSpeaking());
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Reading, OutOfAStalePauseResumesTheVoiceLast)
{
    document().speech.session.PauseBtn_Click();
    voice().take_calls();
    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(voice().calls.back(), "Resume");
    EXPECT_TRUE(document().speech.session.m_bSpeaking() && !document().speech.session.m_bPaused());
}

TEST_F(Reading, OfTheClipboardSetsNoVolumeAndMovesNoSelection)
{
    program.clipboard.text = u"copied";
    program.pane().user_selects(5, 0);
    voice().take_calls();
    document().ReadClipbdBtn.user_press();
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Anna", "Rate 0", "Speak \"copied\" 11" }));
    EXPECT_EQ(document().speech.place.isReadClipbd, 0);
    EXPECT_EQ(document().speech.place.position, 5);
    voice().word(0, 6);
    EXPECT_EQ(program.pane().SelLength(), 0);
    voice().end_stream();
    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(document().speech.place.isReadClipbd, 1);
}

TEST_F(Reading, EndsTheReadingOfFilesByName)
{
    const std::function<void()> entries[] = { [&] { document().speech.reading.SpeakBtn_Click(); },
        [&] { document().speech.reading.ReadClipbdBtn_Click(); },
        [&] { document().speech.reading.readtext(u"a"); } };
    for (const auto& entry : entries) {
        document().chkSpFlagIsFilename.Value = 1;
        entry();
        EXPECT_EQ(document().chkSpFlagIsFilename.Value, 0);
        document().speech.session.StopBtn_Click();
    }
}

TEST_F(Reading, OfTheClipboardGoesOnOverFailures)
{
    program.speech.voices.clear();
    voice().fail("Speak");
    voice().fail("Rate");
    document().speech.reading.ReadClipbdBtn_Click();
    EXPECT_TRUE(document().speech.session.m_bSpeaking());
}

TEST_F(Reading, AGivenTextReplacesARunningReadingButNotAPausedOne)
{
    document().speech.reading.SpeakBtn_Click();
    voice().take_calls();
    document().speech.reading.readtext(u"new");
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Anna", "Rate 0", "Speak \"new\" 11" }));
    document().speech.session.PauseBtn_Click();
    voice().take_calls();
    document().speech.reading.readtext(u"dropped");
    EXPECT_EQ(voice().take_calls(), (Calls{ "Voice Anna", "Rate 0", "Resume" }));
    EXPECT_TRUE(document().speech.session.m_bSpeaking() && !document().speech.session.m_bPaused());
}

TEST_F(Reading, ThatBlocksLeavesTheSpeakingStateBehind)
{
    document().chkSpFlagAync.Value = 0;
    program.speech.while_speaking = [](VoiceRecord& record) {
        record.start_stream();
        record.end_stream();
    };
    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(voice().calls.back(), "Speak \"Hello world.\" 10");
    EXPECT_TRUE(document().speech.session.m_bSpeaking());
}

TEST_F(Reading, CopiesNoTextOnItsWay)
{
    put(std::u16string(100000, u'a').c_str());
    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(voice().last_slice.view().data(), program.pane().Text().view().data());
}

TEST_F(Reading, FlagsFollowTheirBoxes)
{
    struct Case {
        CheckBox DocumentControls::*box;
        int value;
        int flags;
    };
    const Case cases[] = {
        { &DocumentControls::chkSpFlagAync, 0, 10 },
        { &DocumentControls::chkSpFlagPurgeBeforeSpeak, 0, 8 },
        { &DocumentControls::chkSpFlagIsXML, 0, 16 },
        { &DocumentControls::chkSpFlagPersistXML, 1, 48 },
        { &DocumentControls::chkSpFlagNLPSpeakPunc, 1, 112 },
        { &DocumentControls::chkSpFlagAync, 1, 113 },
        { &DocumentControls::chkSpFlagIsXML, 1, 105 },
    };
    for (const Case& row : cases) {
        (document().*row.box).Value = row.value;
        document().speech.reading.SpeakBtn_Click();
        EXPECT_EQ(voice().calls.back(), "Speak \"Hello world.\" " + std::to_string(row.flags));
        document().speech.session.StopBtn_Click();
    }
    document().chkSpFlagIsXML.Value = 0;
    document().speech.panel.ResetBtn_Click();
    EXPECT_EQ(document().chkSpFlagIsXML.Value, 0);
    document().speech.reading.SpeakBtn_Click();
    EXPECT_EQ(voice().calls.back(), "Speak \"Hello world.\" 11");
}

} // namespace
} // namespace tessavox::tests
