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

} // namespace
} // namespace tessavox::tests
