#include "platform/qt/document_area.h"

#include <QAction>
#include <QEvent>
#include <QMdiSubWindow>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace tessavox {

DocumentArea::DocumentArea(QWidget* parent)
    : QMdiArea(parent)
{
    setObjectName("documents");
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(this, &QMdiArea::subWindowActivated, this, &DocumentArea::came_forward);
}

// The windows go with their area, and no longer tell anybody.
DocumentArea::~DocumentArea()
{
    disconnect(this, nullptr, this, nullptr);
}

void DocumentArea::add(QMdiSubWindow& window, std::function<void()> activated)
{
    m_documents.push_back({ &window, std::move(activated) });
    addSubWindow(&window);
}

void DocumentArea::remove(QMdiSubWindow& window)
{
    std::erase_if(
        m_documents, [&](const Document& document) { return document.window == &window; });
}

void DocumentArea::bring_forward(QMdiSubWindow& window)
{
    setActiveSubWindow(&window);
    if (std::exchange(m_next_is_maximised, false) && !window.isHidden())
        window.showMaximized();
}

void DocumentArea::about_to_hide(const QMdiSubWindow& window)
{
    if (window.isMaximized())
        m_next_is_maximised = true;
}

void DocumentArea::show_first(QMdiSubWindow& window)
{
    const QMdiSubWindow* before = activeSubWindow();
    if (!before || before->isMaximized())
        window.showMaximized();
    else
        window.show();
}

void DocumentArea::window_changed()
{
    if (retitled)
        retitled();
}

QString DocumentArea::maximised_title() const
{
    const QMdiSubWindow* document = currentSubWindow();
    const bool fills = document && !document->isHidden() && document->isMaximized();
    return fills ? document->windowTitle() : QString();
}

void DocumentArea::list_in(QMenu& menu)
{
    qDeleteAll(m_listed);
    m_listed.clear();
    if (!menu.isEmpty())
        m_listed.push_back(menu.addSeparator());
    for (const Document& document : m_documents) {
        QMdiSubWindow* window = document.window;
        QAction* entry = menu.addAction(window->windowTitle().replace('&', "&&"), window,
            [this, window] { setActiveSubWindow(window); });
        entry->setCheckable(true);
        entry->setChecked(activeSubWindow() == window);
        m_listed.push_back(entry);
    }
}

bool DocumentArea::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Resize && isVisible() && resized)
        resized();
    return QMdiArea::viewportEvent(event);
}

void DocumentArea::came_forward(QMdiSubWindow* window)
{
    const auto found = std::find_if(m_documents.begin(), m_documents.end(),
        [&](const Document& document) { return document.window == window; });
    if (found != m_documents.end()) {
        const auto activated = found->activated; // it may close the window
        activated();
    }
    window_changed();
}

// Arranging ---------------------------------------------------------------------------------------

void DocumentArea::Arrange(Arrangement arrangement)
{
    switch (arrangement) {
    case Arrangement::cascade:
        return cascadeSubWindows();
    case Arrangement::tile_horizontal:
    case Arrangement::tile_vertical:
        return tile(arrangement);
    case Arrangement::icons:
        return arrange_icons();
    }
}

// Not by the toolkit, which enlarges the main window rather than make a document smaller than it
// likes, and knows one direction only.
void DocumentArea::tile(Arrangement direction)
{
    QList<QMdiSubWindow*> windows = subWindowList();
    windows.removeIf([](QMdiSubWindow* one) { return one->isHidden() || one->isMinimized(); });
    const QRect room = viewport()->rect();
    const bool side_by_side = direction == Arrangement::tile_vertical;
    const int length = side_by_side ? room.width() : room.height();
    for (qsizetype i = 0; i < windows.size(); ++i) {
        const auto edge
            = [&](qsizetype at) { return static_cast<int>(length * at / windows.size()); };
        const int start = edge(i);
        const int size = edge(i + 1) - start;
        if (windows[i]->isMaximized())
            windows[i]->showNormal();
        windows[i]->setGeometry(side_by_side ? QRect(start, 0, size, room.height())
                                             : QRect(0, start, room.width(), size));
    }
}

void DocumentArea::arrange_icons()
{
    int left = 0;
    for (QMdiSubWindow* window : subWindowList()) {
        if (window->isHidden() || !window->isMinimized())
            continue;
        window->move(left, viewport()->height() - window->height());
        left += window->width();
    }
}

} // namespace tessavox
