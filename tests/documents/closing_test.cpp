#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

struct Closing : testing::Test {
    Closing() { program.start(); }
    frmMain& main_window() { return program.main_window(); }
    frmDocument& document() { return program.active(); }
    void open_another() { main_window().mnuFileNew.run(); }
    void answer(MessageAnswer answer) { program.boxes.answers.push_back(answer); }
    RunningProgram program;
};

TEST_F(Closing, AnUnchangedDocumentAsksNothing)
{
    VoiceRecord& voice = program.speech.voice();
    document().speech.reading.SpeakBtn_Click();
    voice.take_calls();
    EXPECT_TRUE(document().user_closed());
    EXPECT_EQ(voice.take_calls(), (std::vector<std::string>{ "Speak \"\" 2" }));
    EXPECT_TRUE(voice.released);
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Closing, AChangedDocumentAsks)
{
    program.pane().user_types(u"x");
    answer(MessageAnswer::no);
    EXPECT_TRUE(document().user_closed());
    ASSERT_EQ(program.boxes.shown.size(), 1u);
    EXPECT_EQ(program.boxes.shown[0].text, "This document has been changed. Do you wish to save?");
    EXPECT_EQ(program.boxes.shown[0].buttons, MessageButtons::yes_no_cancel);
    EXPECT_EQ(program.boxes.shown[0].icon, MessageIcon::question);
    open_another();
    EXPECT_EQ(document().Caption, "Document 1");
}

TEST_F(Closing, ANewDocumentInAFreedSlotStartsUnchanged)
{
    for (int times = 0; times < 2; ++times) {
        open_another();
        EXPECT_EQ(document().Caption, "Document 2");
        EXPECT_TRUE(document().user_closed());
        open_another();
        program.pane().user_types(u"x");
        answer(MessageAnswer::no);
        EXPECT_TRUE(document().user_closed());
    }
    EXPECT_EQ(program.boxes.shown.size(), 2u);
}

TEST_F(Closing, SaveWritesTheTextOfTheActiveDocumentAlsoWhereTwoShareASlot)
{
    frmDocument& start = document();
    open_another();
    main_window().mnuFileClose.run(); // frees the start document's slot too
    open_another();
    frmDocument& other = document();
    ASSERT_EQ(other.Tag, start.Tag);
    program.pane().user_types(u"other");
    start.user_activated();
    program.pane().user_types(u"start ");
    main_window().mnuFileSave.run();
    EXPECT_EQ(program.files.files["/app/first.txt"], "start Hello world.");
    other.user_activated();
    EXPECT_TRUE(other.user_closed());
    start.user_activated();
    program.pane().user_types(u"again ");
    main_window().mnuFileSave.run(); // its table entry went with the other one
    EXPECT_EQ(program.files.files["/app/first.txt"], "start again Hello world.");
}

TEST_F(Closing, ComingBackToADocumentForgetsItsChange)
{
    frmDocument& first = document();
    program.pane().user_types(u"x");
    open_another();
    first.user_activated();
    EXPECT_TRUE(first.user_closed());
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Closing, ACancelledCloseHasSavedTheSettingsAndTakenTheVoice)
{
    program.pane().user_types(u"x");
    document().cpvSlider1.user_drag(9);
    answer(MessageAnswer::cancel);
    EXPECT_FALSE(document().user_closed());
    EXPECT_TRUE(program.file("/setting1.txt").find("\r\n 9\r\n") != std::string::npos);
    EXPECT_TRUE(program.speech.voice().released);

    document().speech.reading.SpeakBtn_Click();
    EXPECT_FALSE(document().speech.session.m_bSpeaking());
    document().speech.reading.ReadClipbdBtn_Click();
    EXPECT_TRUE(document().speech.session.m_bSpeaking());
    document().speech.session.StopBtn_Click();
    document().VoiceCB.user_choose(1);
    document().FormatCB.user_choose(3);
    document().speech.panel.ResetBtn_Click();
    program.dialogs.answers = { "/a.wav" };
    document().speech.wave_file.Play_Click();
    EXPECT_FALSE(document().speech.session.m_bSpeaking());
    answer(MessageAnswer::no);
    EXPECT_TRUE(document().user_closed());
}

TEST_F(Closing, YesOnANewDocumentAsksWhereAndKeepsItsSlot)
{
    open_another();
    program.pane().user_types(u"a\U0001F600\n");
    answer(MessageAnswer::yes);
    program.dialogs.answers = { "/docs/a.txt" };
    EXPECT_TRUE(document().user_closed());
    EXPECT_EQ(program.files.files["/docs/a.txt"], "a\xF0\x9F\x98\x80\n");
    open_another();
    EXPECT_EQ(document().Caption, "Document 3");
}

TEST_F(Closing, YesOnASavedDocumentWritesToItsPath)
{
    open_another();
    program.pane().user_types(u"a");
    program.dialogs.answers = { "/docs/a.txt" };
    main_window().mnuFileSaveAs.run();
    EXPECT_EQ(document().Caption, "/docs/a.txt");
    frmDocument& saved = document();
    open_another();
    saved.user_activated();
    program.pane().user_types(u"b");
    answer(MessageAnswer::yes);
    EXPECT_TRUE(saved.user_closed());
    EXPECT_EQ(program.files.files["/docs/a.txt"], "ab");
    EXPECT_EQ(program.dialogs.requests.size(), 1u);
}

TEST_F(Closing, YesSavesTheDocumentThatAsksNotTheOneInFront)
{
    open_another();
    program.dialogs.answers = { "/docs/a.txt" };
    main_window().mnuFileSaveAs.run();
    program.pane().user_types(u"behind");
    open_another();
    answer(MessageAnswer::yes);
    EXPECT_TRUE(main_window().user_closed());
    EXPECT_EQ(program.files.files["/docs/a.txt"], "behind");
}

TEST_F(Closing, ATextThatCannotBeWrittenIsTold)
{
    program.files.refused.insert("/app/first.txt");
    program.pane().user_types(u"x");
    answer(MessageAnswer::yes);
    EXPECT_TRUE(document().user_closed());
    EXPECT_EQ(program.boxes.shown.back().text, program.texts.with_value(2303, "/app/first.txt"));
    EXPECT_EQ(program.files.files["/app/first.txt"], "Hello world.");
}

TEST_F(Closing, TheStartDocumentIsSavedOverItsFile)
{
    program.pane().user_types(u"x");
    main_window().mnuFileSave.run();
    EXPECT_EQ(program.files.files["/app/first.txt"], "xHello world.");
    EXPECT_TRUE(document().user_closed());
    EXPECT_TRUE(program.boxes.shown.empty());
}

TEST_F(Closing, ACancelledDialogWithAnEarlierPathWritesThere)
{
    open_another();
    program.pane().user_types(u"new");
    program.dialogs.answers = { std::nullopt };
    main_window().mnuFileSave.run();
    EXPECT_EQ(program.files.files["/app/first.txt"], "new");
    EXPECT_EQ(document().Caption, "/app/first.txt");

    RunningProgram other;
    other.files.files.erase("/app/first.txt");
    other.program.main_window().file_commands.dlgCommonDialog.FileName = "";
    other.start();
    other.main_window().mnuFileNew.run();
    other.main_window().file_commands.dlgCommonDialog.FileName = "";
    other.pane().user_types(u"new");
    other.dialogs.answers = { std::nullopt };
    other.main_window().mnuFileSave.run();
    EXPECT_EQ(other.active().Caption, "Document 2");
}

TEST_F(Closing, CloseFreesTheSlotOfTheStartDocumentToo)
{
    open_another();
    main_window().mnuFileClose.run();
    EXPECT_EQ(document().Caption, "/app/first.txt");
    open_another();
    EXPECT_EQ(document().Caption, "Document 1");
    EXPECT_EQ(document().Tag, "1");
}

TEST_F(Closing, ExitClosesEveryDocumentFirstAndEndsTheProcess)
{
    open_another();
    program.speech.voice(1).fail("Speak");
    main_window().mnuFileExit.user_choose();
    EXPECT_TRUE(program.has_quit);
    EXPECT_TRUE(program.windows.open_forms.empty());
    EXPECT_TRUE(program.speech.voice(0).released && program.speech.voice(1).released);
    EXPECT_EQ(program.file("/opened.txt"), file_of_lines({ "0" }));
    program.run_posted();
}

TEST_F(Closing, ADocumentThatCancelsKeepsTheProcess)
{
    program.pane().user_types(u"x");
    answer(MessageAnswer::cancel);
    EXPECT_FALSE(main_window().user_closed());
    EXPECT_FALSE(program.has_quit);
    EXPECT_EQ(program.file("/opened.txt"), file_of_lines({ "1" }));
}

TEST_F(Closing, ADocumentCanCloseInsideItsOwnHandler)
{
    // The button's handler unloads the form that the button belongs to.
    document().SpeakBtn.Click = [this] { document().Unload(); };
    document().SpeakBtn.user_press();
    program.run_posted();
    EXPECT_EQ(program.windows.open_forms.size(), 1u);
}

} // namespace
} // namespace tessavox::tests
