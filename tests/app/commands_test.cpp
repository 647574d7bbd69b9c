#include "app/do_functions.h"
#include "forms/about_controls.h"
#include "forms/centre_form.h"
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

TEST_F(Commands, HideAndShowTheWindowWhateverIsRead)
{
    main.user_changed_state(WindowState::minimised);
    key(0);
    EXPECT_TRUE(main.Visible && main.window_state == WindowState::normal);
    start_reading();
    for (const int id : { 6, 0, 6, 6 }) {
        const bool shows = !main.Visible;
        EXPECT_EQ(key(id), "");
        EXPECT_EQ(main.Visible, shows) << id;
        EXPECT_EQ(state(), "speaking");
    }
    main.user_changed_state(WindowState::minimised);
    key(6);
    EXPECT_TRUE(main.Visible && main.window_state == WindowState::normal);
}

TEST_F(Commands, WithoutADocumentDoNothingButHideAndShow)
{
    document().Command4.user_press(); // the bar
    main.mnuFileClose.run();
    for (const int id : { 0, 1, 2, 3, 4, 5, 8, 9 }) {
        main.Hide();
        try {
            hot_keys.pressed(id);
            ADD_FAILURE() << id;
        } catch (const Failure&) {
        }
        EXPECT_EQ(main.Visible, id == 0);
    }
    hot_keys.pressed(6);
    EXPECT_TRUE(main.Visible);
    main.Hide();
    for (Control* control : window("frmDockDemo")->controls()) {
        if (auto* const button = dynamic_cast<CommandButton*>(control))
            button->user_press();
    }
    EXPECT_TRUE(main.Visible);
    main.Hotkey();
    for (Control* control : main.controls()) {
        auto* const item = dynamic_cast<MenuItem*>(control);
        if (!item || item == &main.mnuFileExit || item == &main.mnuTrayExit)
            continue;
        dialogs.answers = { std::nullopt };
        item->run();
        while (Form* const made = process.forms.active_child()) { // by some
            process.tables.documentChanged[main.file_commands.ActiveDocumentIndex()] = false;
            made->Unload();
        }
    }
    ASSERT_EQ(boxes.shown.size(), 1u); // of the printing
    EXPECT_EQ(boxes.shown.front().text, "No open documents !");
}

TEST_F(Commands, OfTheHelpMenuHaveTheDesktopOpenThem)
{
    const std::pair<const char*, const char*> cases[]
        = { { "mnuHelphelp mnuTrayHelp", "/app/tessavox.chm" },
              { "mnuHelpEmail", "mailto:support@tessavox.org" },
              { "mnuHelpWebsite", "https://www.tessavox.org/" } };
    for (const auto& [items, asked] : cases) {
        for (const std::string& item : words_of(items)) {
            press(item);
            EXPECT_EQ(shell.asked.back(), asked);
        }
    }
    EXPECT_TRUE(boxes.shown.empty());
    const std::pair<int, const char*> reasons[] = { { 2, "File not found" },
        { 3, "Path not found" }, { 5, "Access denied" }, { 8, "Out of memory" },
        { 11, "Invalid EXE file or error in EXE image" }, { 26, "A sharing violation occurred" },
        { 27, "Incomplete or invalid file association" }, { 28, "DDE Time out" },
        { 29, "DDE transaction failed" }, { 30, "DDE busy" },
        { 31, "No association for file extension" }, { 32, "DLL not found" },
        { 0, "Unknown error" }, { 4, "Unknown error" }, { -1, "Unknown error" } };
    for (const auto& [result, text] : reasons) {
        shell.result = result;
        press("mnuHelphelp");
        EXPECT_EQ(boxes.take_shown(),
            (std::vector<FakeMessageBoxes::Box>{
                { text, "Tessavox", MessageButtons::ok, MessageIcon::none } }));
    }
}

TEST_F(Commands, ShowTheAboutBoxInTheMiddleOfTheScreen)
{
    for (const char* item : { "mnuHelpAbout", "mnuTrayAbout" }) {
        press(item);
        auto* const about = window<AboutControls>("AboutBox");
        ASSERT_TRUE(about);
        EXPECT_TRUE(about->Visible && !about->owner());
        EXPECT_EQ(about->Left, (screen.Width() - about->Width) / 2);
        EXPECT_EQ(about->Top, (screen.Height() - about->Height) / 2);
        EXPECT_EQ(about->Caption.get() + about->SkinLabel1.Caption.get(), "TessavoxVersion:3.5.1");
        about->Command1.user_press();
        EXPECT_FALSE(window("AboutBox"));
    }
    CentreForm(main, screen);
    EXPECT_EQ(main.Left, -3200.0); // wider than the screen
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
    for (const bool icon : { false, true }) { // the panel that has it ends, and starts again
        tray.exists = icon;
        tray.changed();
        EXPECT_EQ(main.Visible, !icon);
    }
    main.mnuTrayShowSoftware.user_choose();
    EXPECT_EQ(state(), "idle");
    EXPECT_TRUE(main.Visible);
    EXPECT_TRUE(main.window_state == WindowState::normal);

    main.mnuTrayExit.user_choose();
    EXPECT_EQ(tray.shown, "");
    EXPECT_FALSE(tray.left_button || tray.changed);
    EXPECT_TRUE(has_quit);
}

} // namespace
} // namespace tessavox::tests
