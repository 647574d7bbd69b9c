#include "app/tessavox.h"
#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using MainWindow = StartedProgramTest;

TEST_F(MainWindow, LeadsEveryCommandToTheActiveDocument)
{
    const struct {
        const char* controls;
        const char* asked; // of the voice of the document in front, at the end or before a wait
        bool speaking = false;
        bool paused = false;
    } cases[] = { { "mnuCtlSpeak mnuPopSpeak SpeakBtn", "Speak \"front\" 11" },
        { "mnuCtlPause mnuPopPause mnuTrayPause PauseBtn bar.PauseBtn", "Pause", true },
        { "mnuCtlPause mnuPopPause mnuTrayPause ResumeBtn bar.PauseBtn", "Resume", true, true },
        { "mnuCtlStop mnuPopStop mnuTrayStop StopBtn bar.StopBtn", "Speak \"\" 2", true },
        { "mnuCtlclipboard mnuTrayReadClipboard ReadClipbdBtn bar.ReadClipbdBtn",
            "Speak \"copied\" 11" },
        { "mnuCtlSaveClipboardTexttoWav mnuTrayClipboardtoWav ReadClipboardtoFile "
          "bar.SpeaktofileBtn",
            "Speak \"copied\" 11; WaitUntilDone 0" },
        { "mnuCtlSpeaktofile SpeaktofileBtn", "Speak \"front\" 11; WaitUntilDone 0" },
        { "mnuCtlPlay mnuTrayPlayFile Play bar.Play", "Speak \"/a.wav\" 15" },
        { "SkipBtn", "Skip Sentence 0" }, { "ResetBtn", "Rate 0" } };
    open_another().Command4.user_press();
    clipboard.text = u"copied";
    for (const auto& row : cases) {
        for (const std::string& name : words_of(row.controls)) {
            SCOPED_TRACE(name);
            document().speech.session.UpdateSpeechControls(row.speaking, row.paused);
            document().SkipBtn.Enabled = true;
            show(u"front");
            dialogs.answers = { "/a.wav" };
            asked(1);
            press(name);
            const std::string calls = asked(1);
            EXPECT_TRUE(calls.ends_with(row.asked)
                || calls.find(row.asked + std::string("; ")) != std::string::npos)
                << calls;
            EXPECT_EQ(asked(0), "");
        }
    }
}

TEST_F(MainWindow, HasTheClipboardCommandsInThreePlaces)
{
    const std::pair<const char*, const char*> cases[]
        = { { "mnuEditCut mnuPopCut tbToolBar.7", "ront f" },
              { "mnuEditCopy mnuPopCopy tbToolBar.8", "front f" },
              { "mnuEditPaste mnuPopPaste tbToolBar.9", "copiedront copied" } };
    for (const auto& [controls, then] : cases) {
        for (const std::string& name : words_of(controls)) {
            clipboard.text = u"copied";
            show(u"front", 0, 1);
            press(name);
            EXPECT_EQ(text() + " " + to_utf8(clipboard.text), then) << name;
        }
    }
}

TEST_F(MainWindow, CarriesOutTheFileCommands)
{
    const struct {
        const char* controls;
        const char* then; // after two times: open windows, file dialogs, caption in front
    } cases[] = { { "mnuFileNew tbToolBar.1", "4 0 Document 3" },
        { "mnuFileOpen tbToolBar.2", "4 1 /a.txt" }, { "mnuFileSave tbToolBar.3", "3 1 /a.txt" },
        { "mnuFileSaveAs", "3 2 /a.txt" }, { "mnuFileClose", "2 0 /app/first.txt" },
        { "mnuFileExit", "0 0 " } };
    for (const auto& row : cases) {
        for (const std::string& name : words_of(row.controls)) {
            StartedProgram other;
            other.open_another();
            other.dialogs.answers = { "/a.txt", "/a.txt" };
            other.press(name);
            if (name.starts_with("mnuFileSave") || name == "tbToolBar.3")
                other.press(name);
            std::ostringstream then;
            then << other.windows.open_forms.size() << ' ' << other.dialogs.requests.size() << ' ';
            if (Form* const front = other.process.forms.active_child())
                then << front->Caption;
            EXPECT_EQ(then.str(), row.then) << name;
            EXPECT_EQ(other.has_quit, row.then[0] == '0');
            other.run_posted();
        }
    }
}

TEST_F(MainWindow, HasAllWindowsTakeTheirTextsAndTheSkin)
{
    EXPECT_EQ(skin.asked, "/app/winaqua2.skn frmDocument; /app/winaqua2.skn frmMain; ");
    constexpr StringRow own[] = { { 2205, "Titel" } };
    texts.set_language(own);
    const std::pair<const char*, const char*> cases[] = { { "mnuEditFind", "frmFind" },
        { "mnuInsertMaleReader", "SelectionVoice" }, { "mnuInsertSpeed", "Selectionfrm" },
        { "menuInsertSlience", "Selectionfrm1" }, { "mnuHelpAbout", "AboutBox" },
        { "Command4", "frmDockDemo" }, { "mnuWindowNewWindow", "frmDocument" } };
    for (const auto& [control, name] : cases) {
        skin.asked.clear();
        press(control);
        EXPECT_EQ(skin.asked, std::string("/app/winaqua2.skn ") + name + "; ");
        EXPECT_EQ(window(name)->Tag == "2205", window(name)->Caption == "Titel") << name;
    }
    EXPECT_EQ(window("frmFind")->owner(), &main);
    EXPECT_EQ(document().Caption, "Document 2");
    main.mnuFileExit.run();
    ASSERT_EQ(windows.open_forms.size(), 1u);
    EXPECT_EQ(windows.open_forms.front(), window("SelectionVoice")); // which stays by itself
}

TEST_F(MainWindow, StartsWithItsBarsAndHidesWhenMinimisedOnlyIfTheTrayLeadsBack)
{
    EXPECT_EQ(main.Height, 8000.0);
    EXPECT_EQ(main.Width, 25600.0);
    EXPECT_TRUE(main.sbStatusBar.Visible && main.sbStatusBar.Enabled);
    EXPECT_EQ(main.tbToolBar.Caption.get() + main.Toolbar2.Caption.get(), "Tool barWeb tool bar");
    EXPECT_FALSE(main.Popmenu.Visible);
    for (const bool icon : { false, true }) {
        main.user_changed_state(WindowState::normal);
        tray.exists = icon;
        main.user_changed_state(WindowState::minimised);
        EXPECT_EQ(main.Visible, !icon);
    }
}

/// Each is a hole in the table of texts.
TEST(Program, GoesOnWithoutItsTexts)
{
    RunningProgram program;
    program.texts = StringTable({}, {});
    program.start();
    EXPECT_EQ(program.document().SpeakBtn.Caption, "Read"); // by design
    EXPECT_EQ(program.panel(1) + program.panel(2) + program.panel(3), "");
    program.press("SpeakBtn");
    program.press("PauseBtn");
    EXPECT_EQ(program.state(), "speaking paused");
    program.press("StopBtn");
    program.type(u"x");
    program.save_as("/a.txt");
    EXPECT_EQ(program.files.files["/a.txt"], "x"); // over what was read
    program.open("/a.txt");
    EXPECT_FALSE(program.main.Unload()); // nobody could be asked
    EXPECT_TRUE(program.boxes.shown.empty());
}

struct StartedProcess : UserFiles {
    void start(const std::string& command_line, bool another_runs)
    {
        platform.command_line = command_line;
        tray.exists = true;
        file("opened.txt") = file_of_lines({ another_runs ? "1" : "0" });
        program.Main();
    }
    frmMain& main() { return program.main_window(); }
    std::string window() const
    {
        if (windows.open_forms.empty())
            return "none";
        if (windows.open_forms.front()->name() == "openmsg")
            return "question";
        return windows.open_forms.front()->Visible ? "shown" : "in tray";
    }
    openmsg& question() { return static_cast<openmsg&>(*windows.open_forms.at(0)); }

    Tessavox program{ platform };
};

struct Start : testing::Test, StartedProcess { };

TEST_F(Start, DecidesByTheFlagFileAndTheCommandLine)
{
    const struct {
        const char* command_line;
        bool another_runs;
        // What becomes of it:
        const char* flags; // of web.txt; "" if untouched
        const char* window;
    } cases[] = { { "", false, "", "shown" }, { "300", false, "1000", "in tray" },
        { "400", false, "", "shown" }, { "500", false, "", "shown" },
        { "600", false, "0001", "in tray" }, { "a.txt", false, "", "shown" },
        { "300 a.txt", false, "", "shown" }, { "301", false, "", "shown" },
        { "", true, "", "question" }, { "300", true, "1000", "none" },
        { " 300.0 ", true, "1000", "none" }, { "400", true, "0100", "none" },
        { "500", true, "0010", "none" }, { "600", true, "0001", "none" },
        { "a.txt", true, "", "question" } };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.command_line) + (row.another_runs ? ", running" : ""));
        StartedProcess process;
        process.start(row.command_line, row.another_runs);
        EXPECT_EQ(process.window(), row.window);
        std::string web;
        for (const char* flag = row.flags; *flag; ++flag)
            web += std::string(1, *flag) + "\r\n";
        EXPECT_EQ(process.file("web.txt"), web.empty() ? "" : "\"\r\n" + web + "\"\r\n");
        // It says 1 either way: another copy runs, or this one does now.
        EXPECT_EQ(process.file("opened.txt"), file_of_lines({ "1" }));
        process.run_posted();
        EXPECT_EQ(process.has_quit, row.window == std::string("none"));
    }
}

TEST_F(Start, OpensTheStartDocumentUnchangedAlsoWhereNobodySeesIt)
{
    files.files["/app/first.txt"] = "a\r\nb";
    start("300", false);
    frmDocument& document = main().ActiveForm();
    EXPECT_EQ(document.Caption, "/app/first.txt");
    EXPECT_EQ(document.Tag, "1");
    EXPECT_EQ(to_utf8(document.rtfText->Text().view()), "a\nb");
    EXPECT_TRUE(main().Unload()); // and asks nothing
}

TEST_F(Start, ASecondCopyRunsBesideTheFirstIfTheUserWantsItAndElseEnds)
{
    StartedProcess unwanted;
    unwanted.start("", true);
    unwanted.question().Command1.user_press();
    unwanted.run_posted();
    EXPECT_TRUE(unwanted.has_quit);

    constexpr StringRow own[] = { { 2070, "ist schon offen" } };
    texts.set_language(own);
    start("", true);
    EXPECT_EQ(question().Label1.Caption, "ist schon offen");
    EXPECT_EQ(skin.asked, ""); // it is plain
    files.files.erase("/home/conf//opened.txt");
    question().Command2.user_press();
    run_posted();
    EXPECT_EQ(window(), "shown");
    EXPECT_FALSE(files.files.contains("/home/conf//opened.txt"));
    EXPECT_FALSE(has_quit);
    EXPECT_TRUE(main().Unload());
    EXPECT_EQ(file("opened.txt"), file_of_lines({ "0" })); // though the first one runs
    EXPECT_TRUE(has_quit);
}

} // namespace
} // namespace tessavox::tests
