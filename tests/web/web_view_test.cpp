#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

struct Web : StartedProgramTest {
    /// Tries the text of the address box by its button, or by a key.
    void go(const std::string& address)
    {
        document().Combo1.user_edit(address);
        document().Command3.user_press();
    }
    void press(int key, const std::string& address)
    {
        document().Combo1.user_edit(address);
        document().Combo1.user_presses_key(key, 0);
    }
    std::int16_t& view() { return document().speech.place.view_status; }
};

TEST_F(Web, TheTabsLeadToTheAddressOfTheLastWindowAndBack)
{
    const std::string last[] = { "http://b.example/", "nowhere", "" };
    for (const std::string& address : last) {
        file("setting1.txt") = file_of_lines({ "", "", "", "", address.c_str() });
        const std::string shown = address == last[0] ? address : "https://www.google.com/";
        for (const int tab : { 1, 0 }) {
            document().speech.session.UpdateSpeechControls(true, tab == 1);
            document().TabStrip1.user_select(tab);
            EXPECT_EQ(state(), "idle");
            EXPECT_EQ(page().take_calls(), tab == 1 ? "show " + shown + "; " : "");
            EXPECT_EQ(document().Combo1.Text.get(), shown);
            EXPECT_EQ(view(), tab + 1);
            EXPECT_EQ(document().WebBrowser1.Visible && main.Toolbar2.Visible, tab == 1);
            EXPECT_EQ(document().PicBox.Visible && main.tbToolBar.Visible, tab == 0);
            EXPECT_EQ(windows.focused == &document().WebBrowser1, tab == 1);
        }
    }
    files.files.erase("/home/conf//setting1.txt");
    document().TabStrip1.user_select(1);
    EXPECT_EQ(boxes.take_shown().size(), 1u);
}

TEST_F(Web, GoRemembersEachTimeAndEnterWhatIsNew)
{
    for (const int key : { 13, int('A'), 0 }) {
        view() = 1;
        press(key, key == 13 ? "" : "not yet");
        EXPECT_EQ(view(), 2) << key;
    }
    view() = 1;
    go("a.example");
    EXPECT_EQ(view(), 2);
    press(13, "a.example");
    go("a.example");
    press(13, "b.example");
    document().Combo1.user_choose(2);
    EXPECT_EQ(page().take_calls(),
        "show a.example; show a.example; show a.example; show b.example; show b.example; ");
    EXPECT_EQ(document().Combo1.ListCount(), 3);
    const UrlHistory& history = document().web.history();
    EXPECT_EQ(history[0] + history[1] + history[2] + history[3],
        "a.examplea.exampleb.example"); // one leaves a gap at the start
}

TEST_F(Web, TheHistoryWrapsWhileTheListGrows)
{
    for (int i = 0; i < 40; ++i)
        go(std::to_string(i));
    // The first ten went to 1 to 10; from the eleventh on to 0 to 20, and then nowhere.
    for (int i = 0; i <= 20; ++i)
        EXPECT_EQ(document().web.history()[static_cast<std::size_t>(i)], std::to_string(i + 10));
    press(13, "12");
    press(13, "5"); // no longer in the history, but in the list
    EXPECT_EQ(document().Combo1.ListCount(), 41);
    document().Unload();
    EXPECT_EQ(file("setting3.txt"),
        file_of_lines({ "10", "11", "12", "13", "14", "15", "16", "17", "18", "19", "20" }));
    EXPECT_EQ(open_another().web.history()[10], "20");
}

TEST_F(Web, TheBoxFollowsThePage)
{
    page().location = "http://a.example/1";
    page().NavigateComplete2();
    page().location = "http://a.example/2";
    for (const int button : { 3, 4, 5, 6, 1, 2 }) {
        EXPECT_EQ(document().Combo1.Text, "http://a.example/1");
        page().is_missing = button == 2; // a step that fails is stepped over
        main.Toolbar2.user_press(button);
        EXPECT_EQ(document().Combo1.Text.get().back(), button <= 2 ? '2' : '1') << button;
        document().Combo1.Text = "http://a.example/1";
    }
    EXPECT_EQ(page().take_calls(), "stop; refresh; search; back; ");
    document().Unload();
    EXPECT_TRUE(file("setting1.txt").ends_with("http://a.example/1\r\n\"\r\n"));
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
    main.mnuFilePrint.run(); // prints the page in front
    EXPECT_EQ(page().take_calls() + printer.printed, "6; ");
}

TEST_F(Web, ReadingTakesTheSelectionOrAllOfThePageOverTheClipboard)
{
    const struct {
        const char* address;
        const char16_t* selected;
        const char* read; // and left on the clipboard
        const char* asked;
    } rows[] = {
        { "http://a.example/", u"", "all of it", "12; 17; 12; " },
        { "http://a.example/", u"a part", "a part", "12; " },
        { "http://a.example/a.PDF", u"", "mine", "" },
        { "http://a.example/a.doc", u"a part", "mine", "" },
        { "/d/a.rtf", u"", "mine", "" },
        { "http://a.example/a.doc?b", u"a part", "a part", "12; " },
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
        EXPECT_EQ(to_utf8(clipboard.text), row.read);
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

} // namespace
} // namespace tessavox::tests
