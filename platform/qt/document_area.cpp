#include "platform/qt/document_area.h"

#include "platform/qt/quiet_assistance.h"
#include "platform/qt/text_conversion.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMdiSubWindow>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace tessavox {

namespace {

void tell_assistance(QWidget& widget, QAccessible::Event what)
{
    QAccessibleEvent event(&widget, what);
    QAccessible::updateAccessibility(&event);
}

/// A new window, with all that is in it.
void tell_assistance_of(QWidget& window)
{
    tell_assistance(window, QAccessible::ObjectCreated);
    tell_assistance(window, QAccessible::ObjectShow);
    if (QWidget* focused = QApplication::focusWidget(); focused && window.isAncestorOf(focused))
        tell_assistance(*focused, QAccessible::Focus);
}

} // namespace

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

void DocumentArea::add(QMdiSubWindow& window, QWidget& content, std::function<void()> activated)
{
    m_documents.push_back({ &window, &content, std::move(activated) });
    // Before the toolkit's own handler, which shrinks the window in front, and that one's content
    // need not be laid out for a size at which nobody sees it.
    connect(
        &window, &QMdiSubWindow::aboutToActivate, this, [this, &window] { make_way_for(window); });
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
    const bool fills = !before || before->isMaximized();
    make_way_for(window);
    {
        const QuietAssistance quiet;
        Document* document = document_of(&window);
        cover(*document); // until the window has its place
        fills ? window.showMaximized() : window.show();
        uncover(*document);
    }
    if (isVisible())
        tell_assistance_of(window);
}

void DocumentArea::window_changed(QMdiSubWindow& window)
{
    Document* document = document_of(&window);
    const bool is_normal
        = window.windowState() == Qt::WindowNoState || window.windowState() == Qt::WindowActive;
    if (document && is_normal && !window.isHidden() && !document->was_normal) {
        // Its place is settled only after this change.
        QMetaObject::invokeMethod(
            &window, [this, &window] { bring_into_sight(window); }, Qt::QueuedConnection);
    }
    cover_soon();
    if (retitled)
        retitled();
}

// Only before the user has moved it. The toolkit places a window by the size that it has before it
// is laid out.
void DocumentArea::bring_into_sight(QMdiSubWindow& window)
{
    Document* document = document_of(&window);
    if (!document || window.isMaximized() || window.isMinimized())
        return;
    document->was_normal = true;
    const QRect room = viewport()->rect();
    window.resize(window.size().boundedTo(room.size()));
    const QPoint last(room.width() - window.width(), room.height() - window.height());
    window.move(std::min(window.x(), last.x()), std::min(window.y(), last.y()));
}

// Once it is settled which window is in front: while one comes forward, the focus is still in the
// one before, and hiding that would hand it to any other.
void DocumentArea::cover_soon()
{
    if (std::exchange(m_cover_is_due, true))
        return;
    QMetaObject::invokeMethod(
        this, [this] { hide_what_is_covered(); }, Qt::QueuedConnection);
}

void DocumentArea::hide_what_is_covered()
{
    m_cover_is_due = false;
    QRegion free = viewport()->rect();
    const QList<QMdiSubWindow*> windows = subWindowList(StackingOrder);
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        Document* document = document_of(*window);
        if (!document || (*window)->isHidden())
            continue;
        const QRect place = (*window)->contentsRect().translated((*window)->pos());
        if (*window == currentSubWindow() || free.intersects(place))
            uncover(*document);
        else
            cover(*document);
        free -= (*window)->geometry();
    }
}

void DocumentArea::make_way_for(const QMdiSubWindow& window)
{
    const QMdiSubWindow* front = currentSubWindow();
    Document* document = document_of(front);
    if (document && front != &window && front->isMaximized())
        cover(*document);
}

void DocumentArea::cover(Document& document)
{
    if (document.content->isHidden())
        return;
    document.focused = document.content->focusWidget();
    if (document.focused && document.focused->hasFocus())
        document.focused->clearFocus(); // or hiding it would hand the focus to any other
    document.content->hide();
}

bool DocumentArea::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        cover_soon();
    return QMdiArea::eventFilter(watched, event);
}

DocumentArea::Document* DocumentArea::document_of(const QMdiSubWindow* window)
{
    const auto found = std::find_if(m_documents.begin(), m_documents.end(),
        [&](const Document& document) { return document.window == window; });
    return found == m_documents.end() ? nullptr : &*found;
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
        QString name = menu.fontMetrics().elidedText(
            caption_of(window->windowTitle()), Qt::ElideMiddle, width() / 2);
        QAction* entry = menu.addAction(
            name.replace('&', "&&"), window, [this, window] { setActiveSubWindow(window); });
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
    if (Document* document = document_of(window)) {
        uncover(*document);
        cover_soon();
        const auto activated = document->activated; // it may close the window
        activated();
    }
    if (retitled)
        retitled();
}

// What was hidden could not take the focus back.
void DocumentArea::uncover(Document& document)
{
    if (!document.content->isHidden())
        return;
    document.content->show();
    if (document.focused && document.window == currentSubWindow())
        document.focused->setFocus(Qt::ActiveWindowFocusReason);
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
