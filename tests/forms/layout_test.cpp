#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessavox {
namespace {

/// One number of a control: its name and l, t, w or h.
double measure(const Form& form, const std::string& what)
{
    const std::string name = what.substr(0, what.find('.'));
    for (const Control* control : form.controls()) {
        if (control->name() != name)
            continue;
        switch (what.back()) {
        case 'l':
            return control->Left();
        case 't':
            return control->Top();
        case 'w':
            return control->Width();
        default:
            return control->Height();
        }
    }
    ADD_FAILURE() << "no control " << name;
    return NAN;
}

std::string shown_panes(const frmDocument& document)
{
    std::string names;
    for (const Control* control : std::initializer_list<const Control*>{ &document.PicBox,
             &document.rtfText, &document.Picbox2, &document.WebBrowser1, &document.CoolBar1 })
        names += control->Visible ? control->name() + " " : "";
    return names;
}

struct Layout : testing::Test {
    void resize(double width, double height) { program.active().client_resized(width, height); }
    void expect(std::initializer_list<std::pair<const char*, double>> numbers)
    {
        for (const auto& [what, number] : numbers)
            EXPECT_DOUBLE_EQ(measure(program.active(), what), number) << what;
    }
    Layout() { program.start(); }
    RunningProgram program;
};

TEST_F(Layout, TheTextViewFillsTheWindowRightOfTheColumn)
{
    program.main_window().sbStatusBar.PanelText(1) = "Line Number: 9"; // of another document
    resize(20000, 10000);
    EXPECT_EQ(program.panel(1), "Line Number: 1");
    expect({ { "Picture1.l", 0 }, { "Picture1.t", 0 }, { "Picture1.w", 2775 },
        { "Picture3.l", 2900 }, { "Picture3.t", 0 }, { "Picboxsetting.t", 2600 },
        { "PicBox.l", 2900 }, { "PicBox.t", 500 }, { "PicBox.w", 17100 }, { "PicBox.h", 9200 },
        { "rtfText.l", 0 }, { "rtfText.t", 0 }, { "rtfText.w", 17085 }, { "rtfText.h", 9195 },
        { "TabStrip1.l", 2900 }, { "TabStrip1.t", 500 }, { "TabStrip1.w", 17100 },
        { "TabStrip1.h", 9500 } });
    EXPECT_EQ(shown_panes(program.active()), "PicBox rtfText ");
    EXPECT_EQ(program.windows.focused, &program.active().rtfText);
    EXPECT_TRUE(program.main_window().tbToolBar.Visible);
    EXPECT_FALSE(program.main_window().Toolbar2.Visible);
    EXPECT_TRUE(program.main_window().mnuEdit.Enabled);
}

TEST_F(Layout, TheWebViewMovesTheColumnDownAndStaysThroughResizes)
{
    program.active().speech.place.view_status = 2;
    resize(20000, 10000);
    expect({ { "Picture1.t", 450 }, { "Picture3.l", 2900 }, { "Picture3.t", 450 },
        { "Picboxsetting.t", 3050 }, { "Picbox2.l", 2900 }, { "Picbox2.t", 1000 },
        { "Picbox2.w", 17100 }, { "Picbox2.h", 8700 }, { "WebBrowser1.w", 17100 },
        { "WebBrowser1.h", 8700 }, { "TabStrip1.t", 1000 }, { "TabStrip1.w", 17100 },
        { "TabStrip1.h", 9000 }, { "CoolBar1.l", 200 }, { "CoolBar1.t", 0 },
        { "CoolBar1.w", 19680 }, { "Combo1.l", 0 }, { "Combo1.t", 50 }, { "Combo1.w", 19000 },
        { "Command3.l", 19050 } });
    EXPECT_EQ(shown_panes(program.active()), "Picbox2 WebBrowser1 CoolBar1 ");
    EXPECT_EQ(program.windows.focused, &program.active().WebBrowser1);

    const frmMain& main = program.main_window();
    EXPECT_TRUE(main.Toolbar2.Visible && !main.tbToolBar.Visible);
    for (const MenuItem* item : { &main.mnuInsert, &main.mnuEdit, &main.mnuFormat, &main.mnuWindow,
             &main.mnuFileSave, &main.mnuFileSaveAs, &main.mnuFilePrint })
        EXPECT_FALSE(item->Enabled) << item->name();
    EXPECT_TRUE(main.mnuFileNew.Enabled);
}

TEST_F(Layout, ATinyWindowLeavesPanesAtTheirLastLegalSize)
{
    resize(20000, 10000);
    resize(2800, 400);
    expect({ { "PicBox.h", 9000 }, { "TabStrip1.w", 17100 }, { "TabStrip1.h", 9500 } });

    // Only the second move of the strip fails, and the first has given it the whole width.
    program.active().speech.place.view_status = 2;
    resize(2000, 5000);
    expect({ { "TabStrip1.w", 2000 }, { "TabStrip1.h", 4000 }, { "CoolBar1.w", 1680 } });
    resize(0, 0);
    expect({ { "TabStrip1.w", 2000 }, { "TabStrip1.h", 4000 }, { "CoolBar1.w", 1680 } });
}

TEST_F(Layout, TextWrapsByTheWidthOfTheMainWindow)
{
    program.main_window().client_resized(20000, 12000);
    resize(9000, 9000);
    EXPECT_DOUBLE_EQ(program.pane().right_margin, 0.7 * 20000 - 415);
}

TEST_F(Layout, ANewWindowStartsInTheTextViewBehindAWebView)
{
    program.active().speech.place.view_status = 2;
    resize(20000, 10000);
    program.main_window().mnuFileNew.run();
    EXPECT_TRUE(program.main_window().tbToolBar.Visible);
    EXPECT_FALSE(program.main_window().Toolbar2.Visible);
    EXPECT_EQ(shown_panes(program.active()), "PicBox rtfText ");
}

} // namespace
} // namespace tessavox
