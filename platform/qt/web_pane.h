// The web pane of a document, whose engine is loaded for its first page.
#pragma once

#include "platform/clipboard.h"
#include "platform/file_dialogs.h"
#include "platform/qt/web/page_view.h"
#include "platform/shell.h"
#include "platform/texts.h"
#include "platform/web_pane.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

class QLabel;
class QWidget;

namespace tessavox {

class MessageGate;

/// What all web panes share.
struct WebPaneParts {
    Clipboard& clipboard;
    FileDialogs& dialogs;
    Shell& shell;
    const Texts& texts;
    MessageGate& gate;
    std::string document_helper; // path
    /// Makes a view on a widget. @throws Failure, with a text for the user, if it can't.
    std::function<std::unique_ptr<PageView>(QWidget&, const PageHost&)> make_view;
};

class QtWebPane : public QObject, public WebPane {
public:
    explicit QtWebPane(const WebPaneParts& parts);
    ~QtWebPane() override;

    void Navigate(const std::string& url) override;
    void GoBack() override;
    void GoForward() override;
    void Stop() override;
    void Refresh() override;
    void GoSearch() override;
    std::string LocationURL() const override;
    void ExecWB(WebCommand command) override;

    /// Belongs to the pane, wherever it is shown.
    QWidget& widget() const;

private:
    class Place;

    PageView& view();
    void copy();
    void select_all();
    void save();
    template <class Condition>
    void wait_until(Condition&& is_so, std::chrono::milliseconds kept = {});

    const WebPaneParts& m_parts;
    QPointer<Place> m_place;
    std::unique_ptr<PageView> m_view;
    std::optional<bool> m_all_has_text; // none unless all was just selected
    std::chrono::milliseconds m_patience; // of the present handler
    bool m_patience_returns = false;
};

class QtWebPanes : public WebPanes {
public:
    explicit QtWebPanes(WebPaneParts parts)
        : m_parts(std::move(parts))
    {
    }
    std::unique_ptr<WebPane> create() override { return std::make_unique<QtWebPane>(m_parts); }

private:
    WebPaneParts m_parts;
};

/// A maker of views that loads the library at `path`, tessavox-web.so, for its first one. Where it
/// can't, the Failure says so in the words of `texts`.
std::function<std::unique_ptr<PageView>(QWidget&, const PageHost&)> late_page_views(
    std::string path, const Texts& texts);

} // namespace tessavox
