// A page with what it may not do.
#pragma once

#include "platform/qt/web/page_view.h"

#include <QWebEnginePage>

namespace tessavox {

/// Opens no dialog, no window and no file, whatever its scripts ask for: a box of a script comes
/// back at once as if the user had cancelled it, none keeps its user from leaving, and what wants a
/// window of its own goes to the desktop if it was the user who clicked.
class Page : public QWebEnginePage {
public:
    /// `host` has to outlive it.
    Page(QWebEngineProfile& profile, const PageHost& host, QObject* parent);

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool is_main) override;
    QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }
    QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override
    {
        return {};
    }
    void javaScriptAlert(const QUrl&, const QString&) override { }
    bool javaScriptConfirm(const QUrl&, const QString& text) override;
    bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override
    {
        return false;
    }
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override
    {
    }

private:
    const PageHost& m_host;
};

} // namespace tessavox
