// The library tessavox-web.so: pages of the web by Qt WebEngine.
#include "platform/failure.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/printing/print_server.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/web/confined_pages.h"
#include "platform/qt/web/document_pages.h"
#include "platform/qt/web/page.h"
#include "platform/qt/web/page_view.h"

#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QPointer>
#include <QTimer>
#include <QWebEngineDownloadRequest>
#include <QWebEngineHistory>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineView>

#include <array>
#include <csignal>
#include <utility>

namespace tessavox {
namespace {

using namespace std::chrono_literals;
using Action = QWebEnginePage::WebAction;

/// A page that doesn't answer for so long while the user wants another one hangs.
constexpr auto time_to_answer = 1500ms;

/// A field that has the focus would keep the selection to itself.
constexpr const char* leave_field = R"((() => {
    const field = document.activeElement;
    if (field && (field.isContentEditable || /^(INPUT|TEXTAREA|SELECT)$/.test(field.tagName)))
        field.blur();
})())";
/// Frames keep their selections to themselves.
constexpr const char* ask_for_selection = "String(getSelection()) ? 2 : frames.length > 0 ? 1 : 0";
enum Selection { no_selection, in_a_frame, of_text }; // its answers
/// A selection is made on another way than scripts go, and can come this much later.
constexpr auto time_for_a_selection = 100ms;

constexpr std::array menu_actions = { Action::Back, Action::Forward, Action::Reload,
    Action::NoWebAction, Action::Copy, Action::SelectAll };

class WebEngineView;

/// Keeps nothing of what was visited. All views share it, and the application deletes it after
/// them.
QWebEngineProfile& shared_profile()
{
    static const QPointer profile = [] {
        auto& made = make_child<QWebEngineProfile>(qApp);
        QObject::connect(&made, &QWebEngineProfile::downloadRequested, &made,
            [](QWebEngineDownloadRequest* download) {
                if (download->isSavePageDownload())
                    download->accept(); // all others are refused unless a page takes them
            });
        return &made;
    }();
    return *profile;
}

class WebEngineView : public PageView {
public:
    WebEngineView(QWidget& parent, const PageHost& host);
    ~WebEngineView() override { delete m_view.data(); }

    QWidget& widget() override { return *m_view; }
    void load(const QUrl& address) override;
    bool go_back() override { return go(Action::Back, page().history()->canGoBack()); }
    bool go_forward() override { return go(Action::Forward, page().history()->canGoForward()); }
    void stop() override;
    void refresh() override { go(Action::Reload, true); }
    QString location() const override;
    bool has_selection() const override
    {
        return page().hasSelection() && !m_selection_is_of_before;
    }
    void copy() override { page().triggerAction(Action::Copy); }
    void select_all() override;
    void save(const QString& path) override;
    void print() override;

private:
    QWebEnginePage& page() const { return *m_view->page(); }
    bool go(Action action, bool is_possible);
    void leave_page(std::function<void()> way);
    void end_page_that_hangs();
    void look_at_selection(int turn, bool is_last);
    void tell_selected(int turn, bool has_text);
    void take(QWebEngineDownloadRequest& download);
    void show_document(const QUrl& address, const QUrl& made_page);
    void open_menu(const QPoint& place);

    const PageHost m_host;
    DocumentPages m_documents;
    QUrl m_document; // that is fetched to be shown
    std::function<void()> m_way; // to where the user wants to go
    qint64 m_left_process = 0; // of the page that is left, until it answers
    QTimer m_answer;
    bool m_awaited = false; // whether a page that loads has not told where it is
    /// The engine goes on telling the selection of the page before until there is another one.
    bool m_selection_is_of_before = false;
    int m_selections = 0; // of all, so far
    int m_selecting = 0; // the number of the one that nothing is told of yet, or 0
    QPointer<QWebEngineView> m_view;
};

WebEngineView::WebEngineView(QWidget& parent, const PageHost& host)
    : m_host(host)
    , m_documents(host.document_helper)
    , m_view(&make_child<QWebEngineView>(&parent))
{
    m_view->setPage(&make_child<Page>(shared_profile(), m_host, m_view.data()));
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    const auto told = [this] {
        m_awaited = false;
        if (navigated)
            navigated();
    };
    QObject::connect(&page(), &QWebEnginePage::loadStarted, m_view,
        [this] { m_awaited = m_selection_is_of_before = true; });
    QObject::connect(&page(), &QWebEnginePage::urlChanged, m_view, told);
    QObject::connect(&page(), &QWebEnginePage::loadFinished, m_view, [this, told] {
        if (std::exchange(m_awaited, false)) // back at the address where it was
            told();
    });
    QObject::connect(&page(), &QWebEnginePage::selectionChanged, m_view, [this] {
        m_selection_is_of_before = false;
        if (page().hasSelection())
            tell_selected(m_selecting, true);
    });
    QObject::connect(&shared_profile(), &QWebEngineProfile::downloadRequested, m_view,
        [this](QWebEngineDownloadRequest* download) {
            if (download->page() == &page() && DocumentPages::is_document(*download))
                take(*download);
        });
    m_answer.setSingleShot(true);
    QObject::connect(&m_answer, &QTimer::timeout, m_view, [this] { end_page_that_hangs(); });
    QObject::connect(
        &page(), &QWebEnginePage::renderProcessTerminated, m_view,
        [this] {
            if (m_left_process > 0 && m_way)
                m_way();
            m_left_process = 0;
        },
        Qt::QueuedConnection);
    QObject::connect(m_view, &QWidget::customContextMenuRequested, m_view,
        [this](const QPoint& place) { open_menu(place); });
}

void WebEngineView::load(const QUrl& address)
{
    m_documents.drop();
    m_document.clear();
    leave_page([this, address] { page().load(address); });
}

bool WebEngineView::go(Action action, bool is_possible)
{
    if (is_possible)
        leave_page([this, action] { page().triggerAction(action); });
    return is_possible;
}

/// The next page of a site may have to come into the process of this one, for which a script that
/// never ends would keep it waiting for good.
void WebEngineView::leave_page(std::function<void()> way)
{
    m_way = std::move(way);
    m_left_process = page().renderProcessPid();
    page().runJavaScript("0", QWebEngineScript::ApplicationWorld, [view = m_view, this](auto&&) {
        if (!view)
            return;
        m_answer.stop();
        m_left_process = 0;
    });
    m_answer.start(time_to_answer);
    m_way();
}

void WebEngineView::end_page_that_hangs()
{
    if (m_left_process > 0 && page().renderProcessPid() == m_left_process)
        ::kill(static_cast<pid_t>(m_left_process), SIGKILL);
}

void WebEngineView::stop()
{
    m_documents.drop();
    m_document.clear();
    page().triggerAction(Action::Stop);
}

QString WebEngineView::location() const
{
    const QUrl shown = m_document.isEmpty() ? m_documents.address_of(page().url()) : m_document;
    return shown.toString(QUrl::FullyEncoded);
}

void WebEngineView::select_all()
{
    const int turn = m_selecting = ++m_selections;
    page().runJavaScript(
        leave_field, QWebEngineScript::ApplicationWorld, [this, view = m_view, turn](auto&&) {
            if (!view)
                return;
            page().triggerAction(Action::SelectAll);
            look_at_selection(turn, false);
            QTimer::singleShot(
                time_for_a_selection, view, [this, turn] { look_at_selection(turn, true); });
        });
}

void WebEngineView::look_at_selection(int turn, bool is_last)
{
    page().runJavaScript(ask_for_selection, QWebEngineScript::ApplicationWorld,
        [this, view = m_view, turn, is_last](const QVariant& answer) {
            if (!view)
                return;
            // What the engine tells may be the selection before, or one that scripts don't see.
            const bool may_have_text = answer.toInt() != no_selection || page().hasSelection();
            if (is_last || answer.toInt() == of_text)
                tell_selected(turn, may_have_text);
        });
}

void WebEngineView::tell_selected(int turn, bool has_text)
{
    if (turn == 0 || turn != m_selecting)
        return;
    m_selecting = 0;
    m_selection_is_of_before = m_selection_is_of_before && !has_text;
    if (selected)
        selected(has_text);
}

void WebEngineView::save(const QString& path)
{
    const QUrl shown = page().url();
    if (m_documents.address_of(shown) != shown) { // the document, as it came
        QFile::remove(path);
        QFile::copy(DocumentPages::document_of(shown), path);
    } else if (path.endsWith(".txt", Qt::CaseInsensitive)) {
        page().toPlainText([path](const QString& text) {
            QFile file(path);
            if (file.open(QIODevice::WriteOnly))
                file.write(text.toUtf8());
        });
    } else {
        page().save(path,
            path.endsWith(".mhtml", Qt::CaseInsensitive)
                ? QWebEngineDownloadRequest::MimeHtmlSaveFormat
                : QWebEngineDownloadRequest::CompleteHtmlSaveFormat);
    }
}

void WebEngineView::print()
{
    attempt([this] {
        page().printToPdf(
            [title = page().title()](
                const QByteArray& document) { attempt([&] { print_document(document, title); }); },
            default_paper());
    });
}

void WebEngineView::take(QWebEngineDownloadRequest& download)
{
    m_document = download.url();
    m_documents.take(download,
        [this, address = m_document](const QUrl& made_page) { show_document(address, made_page); });
}

void WebEngineView::show_document(const QUrl& address, const QUrl& made_page)
{
    m_document.clear();
    if (!made_page.isEmpty())
        page().load(made_page);
    else
        page().setHtml("<p>" + m_host.document_failure.toHtmlEscaped() + "</p>", address);
}

void WebEngineView::open_menu(const QPoint& place)
{
    auto& menu = make_child<QMenu>(m_view.data());
    menu.setAttribute(Qt::WA_DeleteOnClose);
    for (const Action action : menu_actions) {
        if (action == Action::NoWebAction)
            menu.addSeparator();
        else
            menu.addAction(page().action(action));
    }
    menu.popup(m_view->mapToGlobal(place));
}

} // namespace
} // namespace tessavox

extern "C" Q_DECL_EXPORT tessavox::PageView* tessavox_make_page_view(
    QWidget& parent, const tessavox::PageHost& host)
{
    using namespace tessavox;
    if (!can_confine_pages())
        throw Failure(from_qt(host.confinement_failure));
    return std::make_unique<WebEngineView>(parent, host).release(); // the caller owns it
}
