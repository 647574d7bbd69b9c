// A page of the web in a widget. Its maker is a library of its own, loaded for the first page.
#pragma once

#include <QString>
#include <QUrl>

#include <functional>

class QWidget;

namespace tessavox {

/// What a page view needs of the program.
struct PageHost {
    /// The desktop is to open an address that the pane doesn't: of a mail, or for a new window.
    std::function<void(const QUrl&)> open_outside;
    QString document_helper; // the path of tessavox-document-helper
    QString document_failure; // what to say of a document that can't be shown
    QString confinement_failure; // what to say where pages can't be confined
};

/// Scripts of a page run in processes of its engine and reach nothing of the program. Nothing that
/// a page does opens a dialog, a window or a file.
class PageView {
public:
    virtual ~PageView() = default;
    virtual QWidget& widget() = 0;
    virtual void load(const QUrl& address) = 0;
    /// Returns whether there was such a page.
    virtual bool go_back() = 0;
    virtual bool go_forward() = 0;
    virtual void stop() = 0;
    virtual void refresh() = 0;
    virtual QString location() const = 0;
    virtual bool has_selection() const = 0;
    /// Begins to copy what is selected.
    virtual void copy() = 0;
    /// Begins to select all, out of any field that has the focus. `selected` runs once when that is
    /// done, and is told whether there can be any text in it; it doesn't run if the page hangs.
    virtual void select_all() = 0;
    /// By the ending of the path: a text, one file, or a file with a folder for what belongs to it.
    virtual void save(const QString& path) = 0;
    /// On the default printer, if there is one.
    virtual void print() = 0;

    std::function<void()> navigated;
    std::function<void(bool has_text)> selected;
};

/// What the library offers, by this name. @throws Failure with a text for the user if this system
/// can't confine pages.
constexpr const char* make_page_view_name = "tessavox_make_page_view";
using MakePageView = PageView*(QWidget& parent, const PageHost& host);

} // namespace tessavox
