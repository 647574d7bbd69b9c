// Moves a small window with the mouse and holds it at the edges of the screen.
#pragma once

#include "platform/screen.h"

#include <cstdint>

namespace tessavox {

class Form;

/// Twips.
struct DockRectangle {
    float Left = 0;
    float Top = 0;
    float Width = 0;
    float Height = 0;
};

struct DockPosition {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    friend bool operator==(const DockPosition&, const DockPosition&) = default;
};

/// Which edges the window is held at. It outlives a drag.
struct DockEdges {
    bool SnappedRight = false;
    bool SnappedLeft = false;
    bool SnappedTop = false;
    bool SnappedBottom = false;
    friend bool operator==(const DockEdges&, const DockEdges&) = default;
};

/// Where a window goes that the pointer has moved by so many twips. An edge within `SnapDistance`
/// takes hold of it, and keeps it until the pointer is further away; left wins over right and top
/// over bottom. `WorkArea` is in twips. @throws Failure for places that no screen has.
DockPosition dragged(const PixelEdges& WorkArea, const DockRectangle& window,
    std::int32_t SnapDistance, DockPosition move, DockEdges& edges);

/// Its owner hands it a window, calls StartDockDrag when the left button is pressed on it, and
/// UpdateDockDrag whenever the pointer moves with that button held. Nothing here throws: what the
/// platform fails to do leaves the window where it was.
class clsDockingHandler {
public:
    explicit clsDockingHandler(Screen& screen);

    /// Pointer position in twips, relative to the window.
    void StartDockDrag(float X, float Y);
    void UpdateDockDrag(float X, float Y);

    Form* ParentForm() const { return m_ParentForm; }
    void set_ParentForm(Form* form) { m_ParentForm = form; }
    bool AlwaysOnTop() const { return m_AlwaysOnTop; }
    /// Takes effect at once, or with the next move if there is no window yet.
    void set_AlwaysOnTop(bool on_top);
    /// How near an edge takes hold, in twips; 10 pixels at first.
    std::int32_t SnapDistance() const { return m_SnapDistance; }
    void set_SnapDistance(std::int32_t twips) { m_SnapDistance = twips; }

private:
    void place(double left, double top) const;

    Screen& m_screen;
    Form* m_ParentForm = nullptr;
    bool m_AlwaysOnTop = false;
    std::int32_t m_SnapDistance;
    float m_DragX = 0;
    float m_DragY = 0;
    PixelEdges m_WorkArea; // in twips
    DockEdges m_edges;
};

} // namespace tessavox
