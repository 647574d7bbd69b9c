#include "tests/fakes/running_program.h"

namespace tessavox {
namespace {

struct Layout : StartedProgramTest {
    void resize(double width, double height) { document().client_resized(width, height); }
    /// Left, top, width and height of a control.
    static std::string place(const Control& control)
    {
        std::ostringstream place;
        place << control.Left() << ' ' << control.Top() << ' ' << control.Width() << ' '
              << control.Height();
        return place.str();
    }
    void expect(std::initializer_list<std::pair<const Control*, const char*>> places)
    {
        for (const auto& [control, expected] : places)
            EXPECT_EQ(place(*control), expected) << control->name();
    }
    std::string shown_panes()
    {
        std::string names;
        const frmDocument& of = document();
        for (const Control* control : std::initializer_list<const Control*>{
                 &of.PicBox, &of.rtfText, &of.Picbox2, &of.WebBrowser1, &of.CoolBar1 })
            names += control->Visible ? control->name() + " " : "";
        return names;
    }
    /// What the main window's controls are in a layout, where all were `before`.
    void expect_menus(bool before, const char* value)
    {
        enable_all(main, before);
        const States expected = with(with(states_of(main), "mnuFileNew", "on"),
            "mnuInsert mnuEdit mnuFormat mnuWindow mnuFileSave mnuFileSaveAs mnuFilePrint", value);
        resize(20000, 10000);
        EXPECT_EQ(states_of(main), expected);
    }
};

TEST_F(Layout, TheTextViewFillsTheWindowRightOfTheColumn)
{
    main.sbStatusBar.PanelText(1) = "Line Number: 9"; // of another document
    resize(20000, 10000);
    EXPECT_EQ(panel(1), "Line Number: 1");
    const frmDocument& of = document();
    expect({ { &of.Picture1, "0 0 2775 2300" }, { &of.Picture3, "2900 0 8055 420" },
        { &of.Picboxsetting, "0 2600 2775 3375" }, { &of.PicBox, "2900 500 17100 9200" },
        { &of.rtfText, "0 0 17085 9195" }, { &of.TabStrip1, "2900 500 17100 9500" } });
    EXPECT_EQ(shown_panes(), "PicBox rtfText ");
    EXPECT_EQ(windows.focused, &of.rtfText);
    EXPECT_TRUE(main.tbToolBar.Visible && !main.Toolbar2.Visible);
    for (const bool before : { false, true })
        expect_menus(before, "on");
}

TEST_F(Layout, TheWebViewMovesTheColumnDownAndStaysThroughResizes)
{
    document().speech.place.view_status = 2;
    resize(20000, 10000);
    const frmDocument& of = document();
    expect({ { &of.Picture1, "0 450 2775 2300" }, { &of.Picture3, "2900 450 8055 420" },
        { &of.Picboxsetting, "0 3050 2775 3375" }, { &of.Picbox2, "2900 1000 17100 8700" },
        { &of.WebBrowser1, "0 0 17100 8700" }, { &of.TabStrip1, "2900 1000 17100 9000" },
        { &of.CoolBar1, "200 0 19680 420" }, { &of.Combo1, "0 50 19000 315" },
        { &of.Command3, "19050 50 600 345" } });
    EXPECT_EQ(shown_panes(), "Picbox2 WebBrowser1 CoolBar1 ");
    EXPECT_EQ(windows.focused, &of.WebBrowser1);
    EXPECT_TRUE(main.Toolbar2.Visible && !main.tbToolBar.Visible);
    for (const bool before : { false, true })
        expect_menus(before, "off");
    // A new window starts in the text view all the same.
    open_another();
    EXPECT_TRUE(main.tbToolBar.Visible && !main.Toolbar2.Visible);
    EXPECT_EQ(shown_panes(), "PicBox rtfText ");
}

} // namespace
} // namespace tessavox
