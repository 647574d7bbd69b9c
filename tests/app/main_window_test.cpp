#include "tests/fakes/running_program.h"

#include "forms/string_table.h"
#include "platform/failure.h"

#include <gtest/gtest.h>

namespace tessavox::tests {
namespace {

struct MainWindow : testing::Test {
    MainWindow() { program.start(); }
    frmMain& main_window() { return program.main_window(); }
    VoiceRecord& voice() { return program.speech.voice(); }
    RunningProgram program;
};

TEST_F(MainWindow, BeginsWithItsOwnSizeAndWithoutTheTrayMenu)
{
    EXPECT_EQ(main_window().Height, 8000.0);
    EXPECT_EQ(main_window().Width, 25600.0);
    EXPECT_TRUE(main_window().sbStatusBar.Visible);
    EXPECT_FALSE(main_window().Popmenu.Visible);
}

TEST_F(MainWindow, LeadsItsMenusToTheActiveDocument)
{
    main_window().mnuFileNew.user_choose();
    program.pane().set_Text(u"front");
    program.clipboard.text = u"copied";
    VoiceRecord& front = program.speech.voice(1);
    const auto last_call = [&] { return front.calls.empty() ? "" : front.calls.back(); };

    main_window().mnuCtlSpeak.user_choose();
    EXPECT_EQ(last_call(), "Speak \"front\" 11");
    main_window().mnuCtlPause.user_choose();
    EXPECT_EQ(last_call(), "Pause");
    main_window().mnuCtlPause.user_choose();
    EXPECT_EQ(last_call(), "Resume");
    main_window().mnuCtlStop.user_choose();
    EXPECT_EQ(last_call(), "Speak \"\" 2");
    main_window().mnuCtlclipboard.user_choose();
    EXPECT_EQ(last_call(), "Speak \"copied\" 11");
    main_window().mnuCtlStop.user_choose();
    program.dialogs.answers = { "/a.wav", "/b.wav", "/c.wav" };
    main_window().mnuCtlSaveClipboardTexttoWav.user_choose();
    EXPECT_EQ(front.last_text, "copied");
    main_window().mnuCtlSpeaktofile.user_choose();
    EXPECT_EQ(front.last_text, "front");
    main_window().mnuCtlPlay.user_choose();
    EXPECT_EQ(last_call(), "Speak \"/c.wav\" 15");
    EXPECT_TRUE(voice().calls.empty());
}

TEST_F(MainWindow, DoesNothingWithoutADocument)
{
    program.active().Unload();
    for (MenuItem* item : { &main_window().mnuCtlSpeak, &main_window().mnuCtlPause,
             &main_window().mnuCtlStop, &main_window().mnuCtlclipboard, &main_window().mnuCtlPlay,
             &main_window().mnuFileClose }) {
        item->Enabled = true;
        item->user_choose();
    }
    EXPECT_EQ(program.windows.open_forms.size(), 1u);
}

TEST_F(MainWindow, SaveWithoutADocumentMakesOne)
{
    program.active().Unload();
    main_window().file_commands.dlgCommonDialog.FileName.clear();
    program.dialogs.answers = { std::nullopt };
    main_window().mnuFileSave.run();
    EXPECT_EQ(program.active().Caption, "Document 1");
}

TEST_F(MainWindow, ItsToolBarGoesByKeys)
{
    main_window().tbToolBar.user_press(1);
    EXPECT_EQ(program.active().Caption, "Document 2");
    program.dialogs.answers = { "/a.txt" };
    main_window().tbToolBar.user_press(2);
    EXPECT_EQ(program.active().Caption, "/a.txt");
}

TEST_F(MainWindow, HidesWhenMinimisedOnlyIfTheTrayLeadsBack)
{
    main_window().user_changed_state(WindowState::minimised);
    EXPECT_TRUE(main_window().Visible);
    main_window().user_changed_state(WindowState::normal);
    program.tray.icon = true;
    main_window().user_changed_state(WindowState::minimised);
    EXPECT_FALSE(main_window().Visible);
}

} // namespace
} // namespace tessavox::tests
