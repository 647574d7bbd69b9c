#include "desktop/docking_handler.h"
#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

constexpr PixelEdges area{ 0, 0, 19200, 15000 }; // twips

/// One step of a drag and where it leads.
struct Step {
    DockRectangle window;
    DockPosition move;
    const char* held; // of r l t b, those that hold the window before
    DockPosition next;
    const char* then;
};

DockEdges edges_of(const std::string& letters)
{
    const auto has = [&](char letter) { return letters.find(letter) != std::string::npos; };
    return { has('r'), has('l'), has('t'), has('b') };
}

TEST(Docking, HoldsAWindowAtAnEdgeUntilThePointerIsOutOfReach)
{
    const auto at = [](float left, float top) { return DockRectangle{ left, top, 3000, 600 }; };
    const Step steps[] = {
        { at(5000, 5000), { 100, -50 }, "", { 5100, 4950 }, "" }, // far from all
        { at(200, 5000), { -50, 0 }, "", { 0, 5000 }, "l" }, // just within reach
        { at(200, 5000), { -49, 0 }, "", { 151, 5000 }, "" },
        { at(0, 5000), { 150, 0 }, "l", { 0, 5000 }, "l" }, // held
        { at(0, 5000), { 151, 0 }, "l", { 151, 5000 }, "" }, // let go
        { at(-100, 5000), { -20, 0 }, "", { 0, 5000 }, "l" }, // beyond the edge counts, too
        { at(-100, 5000), { -60, 0 }, "", { -160, 5000 }, "" },
        { at(5000, 180), { 0, -60 }, "", { 5000, 0 }, "t" },
        { at(5000, 0), { 0, 150 }, "t", { 5000, 0 }, "t" },
        { at(5000, 0), { 0, 151 }, "t", { 5000, 151 }, "" },
        { at(16000, 5000), { 100, 0 }, "", { 16200, 5000 }, "r" },
        { at(16200, 5000), { -150, 0 }, "r", { 16200, 5000 }, "r" },
        { at(16200, 5000), { 151, 0 }, "r", { 16351, 5000 }, "" },
        { at(5000, 14200), { 0, 100 }, "", { 5000, 14300 }, "b" }, // a step short of 14400
        { at(5000, 14300), { 0, 90 }, "b", { 5000, 14300 }, "b" },
        { at(5000, 14300), { 0, -51 }, "b", { 5000, 14249 }, "" },
        { at(200, 200), { -100, -100 }, "", { 0, 0 }, "lt" }, // a corner
        { { 100, 0, 19150, 15000 }, { -20, 10 }, "", { 0, 0 }, "rltb" }, // left and top win
        { at(7, 5000.5F), { 200, 0 }, "lr", { 207, 5000 }, "" }, // halves go to the even one
    };
    for (const Step& step : steps) {
        DockEdges edges = edges_of(step.held);
        const DockPosition next = dragged(area, step.window, 150, step.move, edges);
        EXPECT_EQ(next, step.next)
            << next.Left << ' ' << next.Top << " for " << step.next.Left << ' ' << step.next.Top;
        EXPECT_EQ(edges, edges_of(step.then)) << step.next.Left << ' ' << step.next.Top;
    }
    DockEdges edges; // without a distance only exact alignment takes hold
    EXPECT_EQ(dragged(area, at(10, 5000), 0, { -9, 0 }, edges).Left, 1);
    EXPECT_EQ(dragged(area, at(10, 5000), 0, { -10, 0 }, edges).Left, 0);
    EXPECT_EQ(edges, edges_of("l"));
    edges = {};
    constexpr PixelEdges right_of_a_panel{ 900, 450, 19200, 15000 };
    EXPECT_EQ(dragged(right_of_a_panel, at(1100, 700), 150, { -100, -150 }, edges),
        (DockPosition{ 900, 450 }));
    EXPECT_THROW(dragged(area, at(3e9F, 0), 0, { 0, 0 }, edges), Failure);
}

TEST(Docking, StacksTheWindowAsSoonAsItHasOne)
{
    StartedProgram program;
    clsDockingHandler handler(program.screen);
    EXPECT_EQ(handler.SnapDistance(), 150);
    EXPECT_FALSE(handler.AlwaysOnTop());
    handler.set_AlwaysOnTop(true);
    handler.UpdateDockDrag(100, 100);
    EXPECT_EQ(program.windows.placed, PixelBox());
    handler.set_ParentForm(&program.main);
    program.main.placed(3000, 1500, 6000, 750);
    handler.UpdateDockDrag(30, 0); // also without a press
    EXPECT_EQ(program.windows.placed, (PixelBox{ 202, 100, 400, 50 }));
    EXPECT_TRUE(program.windows.stacking == Stacking::topmost);
    handler.set_AlwaysOnTop(false);
    EXPECT_TRUE(program.windows.stacking == Stacking::not_topmost);
}

struct DockBar : StartedProgramTest {
    DockBar()
    {
        document().Command4.user_press();
        bar = window<DockControls>("frmDockDemo");
        bar->placed(6000, bar->Top, 7335, 675);
    }
    DockControls* bar = nullptr;
};

TEST_F(DockBar, IsDraggedByTheLeftButtonAlone)
{
    bar->user_pressed_mouse(1, 100, 100);
    windows.placed = {};
    bar->user_moved_mouse(1, 100, 100); // no step
    EXPECT_EQ(windows.placed, PixelBox());
    bar->user_moved_mouse(1, 1600, 3100);
    EXPECT_EQ(windows.placed, (PixelBox{ 500, 201, 489, 45 }));
    EXPECT_TRUE(windows.stacking == Stacking::topmost);
    bar->user_pressed_mouse(2, 0, 0);
    bar->user_moved_mouse(2, 500, 500);
    bar->user_moved_mouse(3, 500, 500);
    EXPECT_EQ(windows.placed.left, 500);
    bar->user_moved_mouse(1, 101, -2800); // within 150 twips of the top edge
    EXPECT_EQ(windows.placed.top, 0);
    bar->user_pressed_mouse(1, 100, 100); // pressed again: it is still held
    bar->user_moved_mouse(1, 100, 250);
    EXPECT_EQ(windows.placed.top, 0);
    bar->hscrollSnapDistance.user_drag(3);
    EXPECT_EQ(bar->lblSnapDistance.Caption, "3");
    bar->user_moved_mouse(1, 100, 160);
    EXPECT_EQ(windows.placed.top, 4);
    bar->user_closed();
    document().Command4.user_press();
    EXPECT_EQ(bar->hscrollSnapDistance.Value, 10);
}

TEST_F(DockBar, TakesTurnsWithTheWindowAndKeepsItsPlaceUntilItIsClosed)
{
    EXPECT_FALSE(main.Visible);
    bar->placed(6000, 3000, 7335, 675);
    bar->Command4.user_press();
    EXPECT_TRUE(main.Visible && !bar->Visible);
    document().Command4.user_press();
    EXPECT_EQ(bar->Top, 3000.0);
    for (const bool icon : { false, true }) { // without an icon, only the task bar leads back to it
        tray.exists = icon;
        bar->user_changed_state(WindowState::normal);
        bar->user_changed_state(WindowState::minimised);
        EXPECT_EQ(bar->Visible, !icon);
    }
    EXPECT_FALSE(main.Visible);
    document().Command4.user_press();
    EXPECT_TRUE(bar->Visible && bar->window_state == WindowState::normal);
    bar->user_closed();
    EXPECT_TRUE(main.Visible);
    document().Command4.user_press();
    EXPECT_EQ(window("frmDockDemo")->Top, 10.0);
    windows.in_front = nullptr;
    main.mnuFileExit.run();
    EXPECT_TRUE(has_quit);
    EXPECT_EQ(windows.in_front, nullptr); // the window doesn't flash up
}

} // namespace
} // namespace tessavox::tests
