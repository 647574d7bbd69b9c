#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

struct Web : StartedProgramTest {
    /// Tries the text of the address box by its button, or by Enter.
    void go(const std::string& address)
    {
        document().Combo1.user_edit(address);
        document().Command3.user_press();
    }
    void enter(const std::string& address)
    {
        document().Combo1.user_edit(address);
        document().Combo1.user_presses_key(13, 0);
    }
    std::int16_t& view() { return document().speech.place.view_status; }
    const UrlHistory& history() { return document().web.history(); }
};

TEST_F(Web, TheTabsLeadToTheAddressOfTheLastWindowAndBack)
{
    const std::pair<const char*, const char*> rows[] = { { "http://b.example/",
                                                             "show http://b.example/; " },
        { "nowhere", "show https://www.google.com/; " }, { "", "show https://www.google.com/; " } };
    for (const auto& [last, shown] : rows) {
        file("setting1.txt") = file_of_lines({ "", "", "", "", last });
        document().speech.session.UpdateSpeechControls(true, true);
        document().TabStrip1.user_select(1);
        EXPECT_EQ(state(), "idle");
        EXPECT_EQ(page().take_calls(), shown);
        EXPECT_EQ("show " + document().Combo1.Text.get() + "; ", shown);
        EXPECT_EQ(view(), 2);
        EXPECT_TRUE(document().WebBrowser1.Visible && main.Toolbar2.Visible);
        EXPECT_EQ(windows.focused, &document().WebBrowser1);
        document().speech.session.UpdateSpeechControls(true, false);
        document().TabStrip1.user_select(0);
        EXPECT_EQ(state(), "idle");
        EXPECT_EQ(view(), 1);
        EXPECT_TRUE(document().PicBox.Visible && main.tbToolBar.Visible);
        EXPECT_EQ(page().take_calls(), "");
    }
    file("setting1.txt").clear();
    files.files.erase("/home/conf//setting1.txt");
    document().TabStrip1.user_select(1);
    EXPECT_EQ(boxes.take_shown().size(), 1u);
}

TEST_F(Web, GoRemembersEachTimeAndEnterWhatIsNew)
{
    view() = 1;
    document().Combo1.user_edit("");
    for (const int key : { 13, int('A'), 0 }) {
        document().Combo1.user_presses_key(key, 0);
        EXPECT_EQ(std::exchange(view(), std::int16_t(1)), 2) << key;
    }
    EXPECT_EQ(page().take_calls(), "");
    go("a.example");
    enter("a.example");
    go("a.example");
    enter("b.example");
    EXPECT_EQ(
        page().take_calls(), "show a.example; show a.example; show a.example; show b.example; ");
    EXPECT_EQ(document().Combo1.ListCount(), 3);
    EXPECT_EQ(view(), 2);
    EXPECT_EQ(history()[0] + history()[1] + history()[2] + history()[3],
        "a.examplea.exampleb.example"); // one leaves a gap at the start

    document().Combo1.user_choose(2);
    EXPECT_EQ(page().take_calls(), "show b.example; ");
    EXPECT_EQ(document().Combo1.ListCount(), 3);
}

TEST_F(Web, TheHistoryWrapsWhileTheListGrows)
{
    for (int i = 0; i < 40; ++i)
        go(std::to_string(i));
    EXPECT_EQ(document().Combo1.ListCount(), 40);
    // The first ten went to 1 to 10; from the eleventh on to 0 to 20, and then nowhere.
    for (int i = 0; i <= 20; ++i)
        EXPECT_EQ(history()[static_cast<std::size_t>(i)], std::to_string(i + 10));
    enter("12");
    enter("5"); // no longer in the history, but in the list
    EXPECT_EQ(document().Combo1.ListCount(), 41);
    document().Unload();
    EXPECT_EQ(file("setting3.txt"),
        file_of_lines({ "10", "11", "12", "13", "14", "15", "16", "17", "18", "19", "20" }));
}

TEST_F(Web, TheBoxFollowsThePage)
{
    page().location = "http://a.example/1";
    page().NavigateComplete2();
    EXPECT_EQ(document().Combo1.Text, "http://a.example/1");
    page().location = "http://a.example/2";
    main.Toolbar2.user_press(5);
    EXPECT_EQ(document().Combo1.Text, "http://a.example/1");
    for (const int button : { 1, 2 }) {
        document().Combo1.Text = "";
        page().is_missing = button == 2; // a step that fails is stepped over
        main.Toolbar2.user_press(button);
        EXPECT_EQ(document().Combo1.Text, "http://a.example/2");
    }
    page().is_missing = false;
    for (const int button : { 3, 4, 6 })
        main.Toolbar2.user_press(button);
    EXPECT_EQ(page().take_calls(), "refresh; back; stop; search; ");
    document().Unload();
    EXPECT_TRUE(file("setting1.txt").ends_with("http://a.example/2\r\n\"\r\n"));
}

TEST_F(Web, EachPresetSiteShowsInTheWebLayoutBesideTheTextTab)
{
    int sites = 0;
    for (Control* control : main.controls()) {
        if (control->container() != &main.mnuWebsite)
            continue;
        view() = 1;
        document().control_pos();
        static_cast<MenuItem&>(*control).user_choose();
        EXPECT_EQ(view(), 2);
        EXPECT_TRUE(document().WebBrowser1.Visible);
        EXPECT_EQ(document().TabStrip1.SelectedItem, 0);
        EXPECT_TRUE(page().take_calls().starts_with("show https://"));
        ++sites;
    }
    EXPECT_EQ(sites, 11);
}

TEST_F(Web, ReadingTakesTheSelectionOrAllOfThePageOverTheClipboard)
{
    const struct {
        const char* address;
        const char16_t* selected;
        const char* read;
        const char* asked;
        const char16_t* left; // on the clipboard
    } rows[] = {
        { "http://a.example/", u"", "all of it", "12; 17; 12; ", u"all of it" },
        { "http://a.example/", u"a part", "a part", "12; ", u"a part" },
        { "http://a.example/a.PDF", u"", "mine", "", u"mine" },
        { "http://a.example/a.doc", u"a part", "mine", "", u"mine" },
        { "/d/a.rtf", u"", "mine", "", u"mine" },
        { "http://a.example/a.doc?b", u"a part", "a part", "12; ", u"a part" },
    };
    view() = 2;
    document().control_pos2();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.address);
        document().Combo1.Text = row.address;
        page().text = u"all of it";
        page().selected = row.selected;
        clipboard.text = u"mine";
        document().speech.place.isReadClipbd = 0;
        windows.focused = nullptr;
        pane().user_selects(3, 0);
        document().SpeakBtn.user_press();
        EXPECT_EQ(voice().last_text, row.read);
        EXPECT_EQ(page().take_calls(), row.asked);
        EXPECT_EQ(clipboard.text, row.left);
        EXPECT_EQ(state(), "speaking");
        EXPECT_EQ(windows.focused, &document().WebBrowser1);
        EXPECT_EQ(document().speech.place.position, 3);
        EXPECT_EQ(document().speech.place.isReadClipbd, 1);
        document().speech.session.StopBtn_Click();
    }
    page().is_missing = true;
    document().Combo1.Text = "";
    document().SpeakBtn.user_press();
    EXPECT_EQ(state(), "idle");
}

TEST_F(Web, ThePageInFrontIsPrintedByItself)
{
    view() = 2;
    main.mnuFilePrint.run();
    EXPECT_EQ(page().take_calls(), "6; ");
    EXPECT_EQ(printer.printed, "");
}

} // namespace
} // namespace tessavox::tests
