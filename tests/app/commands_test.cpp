#include "app/do_functions.h"
#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

struct Commands : StartedProgramTest {
    Commands()
    {
        document().rtfText->set_Text(u"One two.");
        process.tables.documentChanged[1] = false;
        clipboard.text = u"copied";
        asked();
    }
    /// The key with that number, as the platform reports it. Returns what it asked of the voice.
    std::string key(int id)
    {
        try {
            hot_keys.pressed(id);
        } catch (const Failure&) {
            return "failure";
        }
        return asked();
    }
    void start_reading() { voice().start_stream(); }
};

TEST_F(Commands, OfTheKeysAreRegisteredInTheirOrderAndGivenBackButTheLast)
{
    EXPECT_EQ(hot_keys.calls,
        " +0:2:116 +1:2:117 +2:2:118 +3:2:119 +4:2:38 +5:2:40 +6:2:120 +8:2:122 +9:2:123");
    EXPECT_EQ(hot_keys.names,
        "Read;Pause;Stop;Read Clipboard;Read faster;Read slower;"
        "Hide or show the window;Play File;Save Clipboard to File;");
    RunningProgram other;
    other.hot_keys.taken_elsewhere = { 0, 3 };
    other.start();
    other.hot_keys.calls.clear();
    other.hot_keys.changed(1, false); // at a later time
    other.hot_keys.changed(3, true);
    other.main.mnuFileExit.run();
    EXPECT_EQ(other.hot_keys.calls, " -2 -3 -4 -5 -6 -8");
    EXPECT_FALSE(other.hot_keys.pressed || other.hot_keys.changed);
}

TEST_F(Commands, ByNumberActOnlyWhereTheButtonIsEnabled)
{
    const auto speaks
        = [](const std::string& calls) { return calls.find("Speak ") != std::string::npos; };
    EXPECT_TRUE(speaks(key(0)));
    start_reading();
    EXPECT_FALSE(speaks(key(0)));
    EXPECT_FALSE(speaks(key(3)));
    EXPECT_EQ(key(1), "Pause");
    EXPECT_EQ(key(1), "Resume");
    EXPECT_TRUE(dialogs.requests.empty());
    for (const int id : { 8, 9 })
        key(id);
    EXPECT_TRUE(dialogs.requests.empty());
    EXPECT_NE(key(2), "");
    EXPECT_EQ(state(), "idle");
    for (const int id :
        { 1, 2, 7, 10, 255, 256 + 7 }) // nothing is read, or there is no such number
        EXPECT_EQ(key(id), "") << id;
    EXPECT_TRUE(speaks(key(3)));
    document().speech.session.StopBtn_Click();
    for (const int id : { 8, 9 }) {
        dialogs.answers = { std::nullopt };
        key(id);
    }
    EXPECT_EQ(dialogs.requests.size(), 2u);
}

TEST_F(Commands, ChangeTheSpeedAlsoOfAHiddenWindow)
{
    document().cpvSlider1.Value = 9;
    main.Hide();
    key(4);
    EXPECT_EQ(panel(3), "Speaking Speed: 10");
    EXPECT_EQ(key(4), "failure"); // out of the slider's range
    EXPECT_EQ(document().cpvSlider1.Value, 10);
    key(5);
    EXPECT_EQ(panel(3), "Speaking Speed: 9");
    EXPECT_FALSE(main.Visible);
}

TEST_F(Commands, HideAndShowTheMainWindowWhateverIsRead)
{
    start_reading();
    key(6);
    EXPECT_FALSE(main.Visible);
    EXPECT_EQ(state(), "speaking");
    main.window_state = WindowState::minimised;
    key(6);
    EXPECT_TRUE(main.Visible);
    EXPECT_TRUE(main.window_state == WindowState::normal);
    document().speech.session.StopBtn_Click();
    main.Hide();
    EXPECT_NE(key(0).find("Speak "), std::string::npos);
    EXPECT_TRUE(main.Visible);
}

TEST_F(Commands, WithoutADocumentFailButForTheWindows)
{
    document().Unload();
    for (const int id : { 0, 1, 2, 3, 4, 5, 8, 9 }) {
        EXPECT_THROW(hot_keys.pressed(id), Failure) << id;
    }
    hot_keys.pressed(6);
    EXPECT_FALSE(main.Visible);
}

/// A message that waits may bring another document to the front before the command looks.
TEST_F(Commands, LetWaitingMessagesRunFirst)
{
    frmDocument& first = document();
    open_another();
    during_events = [&] { first.user_activated(); };
    hot_keys.pressed(0);
    EXPECT_NE(asked(0).find("Speak "), std::string::npos);
    EXPECT_EQ(asked(1).find("Speak "), std::string::npos);
}

TEST_F(Commands, OfTheTrayBringTheWindowBack)
{
    EXPECT_EQ(tray.shown, "Tessavox:Right click to show options Popmenu");
    start_reading();
    main.user_changed_state(WindowState::minimised);
    EXPECT_FALSE(main.Visible);
    tray.left_button();
    EXPECT_TRUE(main.Visible);
    EXPECT_TRUE(main.window_state == WindowState::normal);
    EXPECT_EQ(windows.popped_up, "Popmenu");
    EXPECT_EQ(state(), "speaking");

    main.user_changed_state(WindowState::minimised);
    main.mnuTrayShowSoftware.user_choose();
    EXPECT_EQ(state(), "idle");
    EXPECT_TRUE(main.Visible);
    EXPECT_TRUE(main.window_state == WindowState::normal);

    main.mnuTrayExit.user_choose();
    EXPECT_EQ(tray.shown, "");
    EXPECT_TRUE(has_quit);
}

TEST_F(Commands, OfTheHelpMenuSayWhyNothingOpens)
{
    main.mnuHelphelp.run();
    main.mnuHelpEmail.run();
    main.mnuHelpWebsite.run();
    EXPECT_EQ(shell.asked.size(), 3u);
    EXPECT_EQ(shell.asked[0], "/app/tessavox.chm");
    EXPECT_TRUE(shell.asked[1].starts_with("mailto:") && shell.asked[2].starts_with("https:"));
    EXPECT_TRUE(boxes.take_shown().empty());
    const std::pair<int, const char*> reasons[] = { { 2, "File not found" },
        { 3, "Path not found" }, { 5, "Access denied" }, { 8, "Out of memory" },
        { 11, "Invalid EXE file or error in EXE image" }, { 26, "A sharing violation occurred" },
        { 27, "Incomplete or invalid file association" }, { 28, "DDE Time out" },
        { 29, "DDE transaction failed" }, { 30, "DDE busy" },
        { 31, "No association for file extension" }, { 32, "DLL not found" },
        { 0, "Unknown error" }, { 6, "Unknown error" } };
    for (const auto& [result, text] : reasons) {
        shell.result = result;
        main.mnuTrayHelp.run();
        const auto shown = boxes.take_shown();
        ASSERT_EQ(shown.size(), 1u);
        EXPECT_EQ(shown[0].text, text);
    }
    main.mnuHelpAbout.run();
    EXPECT_EQ(windows.in_front->name(), "AboutBox");
    EXPECT_EQ(windows.in_front->Left, (19200 - 4200) / 2.0);
}

TEST_F(Commands, PaintEveryWindowAlsoWithoutASkin)
{
    main.mnuTrayAbout.user_choose();
    document().Command4.user_press();
    EXPECT_EQ(skin.loaded, "/app/winaqua2.skn");
    EXPECT_EQ(skin.skinned,
        (std::vector<std::string>{ "frmDocument", "frmMain", "AboutBox", "frmDockDemo" }));
    RunningProgram other;
    other.skin.is_missing = true;
    other.start();
    EXPECT_TRUE(other.main.Visible);
}

} // namespace
} // namespace tessavox::tests
