#include "desktop/docking_handler.h"

#include "platform/controls/form.h"
#include "platform/failure.h"

#include <cmath>
#include <limits>

namespace tessavox {

namespace {

constexpr double first_snap_distance_pixels = 10;

/// To the nearest whole number, halves to the even one. @throws Failure if that is too large.
std::int32_t rounded(double value)
{
    const double whole = std::nearbyint(value);
    if (!(std::abs(whole) <= std::numeric_limits<std::int32_t>::max()))
        throw Failure("no place on any screen");
    return static_cast<std::int32_t>(whole);
}

/// The arithmetic of places is that of single precision.
float single(std::int32_t whole)
{
    return static_cast<float>(whole);
}

/// One edge's turn: `place` becomes `held` while the edge holds the window, or `edge` when it takes
/// hold.
void test_edge(
    bool& is_snapped, bool within_reach, std::int32_t held, std::int32_t edge, std::int32_t& place)
{
    if (within_reach)
        place = is_snapped ? held : edge;
    is_snapped = within_reach;
}

} // namespace

DockPosition dragged(const PixelEdges& WorkArea, const DockRectangle& window,
    std::int32_t SnapDistance, DockPosition move, DockEdges& edges)
{
    DockPosition next{ rounded(window.Left + single(move.Left)),
        rounded(window.Top + single(move.Top)) };
    const std::int32_t distRight
        = rounded(single(WorkArea.Right) - (window.Width + single(next.Left)));
    const std::int32_t distLeft = rounded(1.0 * next.Left - WorkArea.Left);
    const std::int32_t distBottom
        = rounded(single(WorkArea.Bottom) - (window.Height + single(next.Top)));
    const std::int32_t distTop = rounded(1.0 * next.Top - WorkArea.Top);
    const auto is_near = [&](std::int32_t distance) { return std::abs(distance) <= SnapDistance; };
    const std::int32_t held_left = rounded(window.Left);
    const std::int32_t held_top = rounded(window.Top);
    // The distance to the bottom is measured from the wanted place, but counted from the present
    // one: the window comes to rest a mouse step away from that edge, unlike at the others.
    test_edge(edges.SnappedBottom, is_near(distBottom), held_top,
        rounded(window.Top + single(distBottom)), next.Top);
    test_edge(edges.SnappedTop, is_near(distTop), held_top, WorkArea.Top, next.Top);
    test_edge(edges.SnappedRight, is_near(distRight), held_left,
        rounded(single(WorkArea.Right) - window.Width), next.Left);
    test_edge(edges.SnappedLeft, is_near(distLeft), held_left, WorkArea.Left, next.Left);
    return next;
}

clsDockingHandler::clsDockingHandler(Screen& screen)
    : m_screen(screen)
    , m_SnapDistance(rounded(first_snap_distance_pixels * screen.TwipsPerPixelX()))
{
}

void clsDockingHandler::StartDockDrag(float X, float Y)
{
    attempt([&] {
        const PixelEdges pixels = m_screen.work_area();
        const double x = m_screen.TwipsPerPixelX();
        const double y = m_screen.TwipsPerPixelY();
        m_WorkArea = { rounded(pixels.Left * x), rounded(pixels.Top * y), rounded(pixels.Right * x),
            rounded(pixels.Bottom * y) };
    });
    m_DragX = X;
    m_DragY = Y;
}

// X and Y are relative to the window, which follows the pointer, so their distance from the place
// of the press is each time the step since the last move.
void clsDockingHandler::UpdateDockDrag(float X, float Y)
{
    if (!m_ParentForm)
        return;
    attempt([&] {
        const DockPosition move{ rounded(X - m_DragX), rounded(Y - m_DragY) };
        if (move == DockPosition{})
            return;
        const DockRectangle window{ static_cast<float>(m_ParentForm->Left),
            static_cast<float>(m_ParentForm->Top), static_cast<float>(m_ParentForm->Width),
            static_cast<float>(m_ParentForm->Height) };
        const DockPosition next = dragged(m_WorkArea, window, m_SnapDistance, move, m_edges);
        place(next.Left, next.Top);
    });
}

void clsDockingHandler::set_AlwaysOnTop(bool on_top)
{
    m_AlwaysOnTop = on_top;
    if (m_ParentForm)
        attempt([&] { place(m_ParentForm->Left, m_ParentForm->Top); });
}

void clsDockingHandler::place(double left, double top) const
{
    const double x = m_screen.TwipsPerPixelX();
    const double y = m_screen.TwipsPerPixelY();
    m_ParentForm->window().SetWindowPos(m_AlwaysOnTop ? Stacking::topmost : Stacking::not_topmost,
        { rounded(left / x), rounded(top / y), rounded(m_ParentForm->Width / x),
            rounded(m_ParentForm->Height / y) });
}

} // namespace tessavox
