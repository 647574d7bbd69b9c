// Where the documents lie in the main window.
#pragma once

#include "platform/document_arrangement.h"

#include <QMdiArea>
#include <QPointer>

#include <functional>
#include <vector>

class QAction;
class QMenu;

namespace tessavox {

/// Knows the windows of the documents in the order of their making, which one is in front, and
/// which fills the area. The content of a window that others cover altogether is hidden, so that
/// assistive technologies take it for shown just when the eye does. The windows belong to it, but
/// each says itself when it comes and goes.
class DocumentArea : public QMdiArea, public DocumentArrangement {
public:
    explicit DocumentArea(QWidget* parent);
    ~DocumentArea() override;

    /// The size of the area may have changed.
    std::function<void()> resized;
    /// maximised_title() may have changed.
    std::function<void()> retitled;

    /// `content` is all that is in the window. `activated` runs whenever the window comes to the
    /// front, with its content already shown.
    void add(QMdiSubWindow& window, QWidget& content, std::function<void()> activated);
    void remove(QMdiSubWindow& window);
    void bring_forward(QMdiSubWindow& window);
    /// A window is about to hide for good. If it fills the area, the next one will as well.
    void about_to_hide(const QMdiSubWindow& window);
    /// The first document fills the area, and others do as the one before them does.
    void show_first(QMdiSubWindow& window);
    /// A window's state or title has changed.
    void window_changed(QMdiSubWindow& window);

    /// The title of the document that fills the area; empty if none does.
    QString maximised_title() const;
    /// Lists the documents at the end of a menu, instead of those that it listed there before.
    void list_in(QMenu& menu);

    void Arrange(Arrangement arrangement) override;

protected:
    bool viewportEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Document {
        QMdiSubWindow* window;
        QWidget* content;
        std::function<void()> activated;
        bool was_normal = false;
        QPointer<QWidget> focused = {}; // when it was hidden
    };
    Document* document_of(const QMdiSubWindow* window);
    void bring_into_sight(QMdiSubWindow& window);
    void make_way_for(const QMdiSubWindow& window);
    static void cover(Document& document);
    void uncover(Document& document);
    void cover_soon();
    void hide_what_is_covered();
    void came_forward(QMdiSubWindow* window);
    void tile(Arrangement direction);
    void arrange_icons();

    std::vector<Document> m_documents;
    std::vector<QAction*> m_listed;
    bool m_next_is_maximised = false;
    bool m_cover_is_due = false;
};

} // namespace tessavox
