#include "platform/qt/web_pane.h"

#include "platform/failure.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/late_library.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/text_conversion.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLoggingCategory>
#include <QOpenGLContext>
#include <QTimer>
#include <QUrlQuery>
#include <QVBoxLayout>
#include <QWidget>

QT_BEGIN_NAMESPACE
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
QT_END_NAMESPACE

namespace tessavox {
namespace {

using std::chrono::milliseconds;

/// How long one handler waits for a page in all.
constexpr milliseconds whole_patience(1500);
/// Of that, what is kept for all of the page when nothing comes of copying a part of it.
constexpr milliseconds kept_for_all(750);
constexpr milliseconds look_interval(5);

constexpr const char* search_page = "https://duckduckgo.com/";

QUrl search_for(const QString& words)
{
    QUrl address(search_page);
    QUrlQuery query;
    query.addQueryItem("q", words);
    address.setQuery(query);
    return address;
}

/// What a user, or a file dialog, means by a text.
QUrl address_of(const QString& text)
{
    const QUrl address = QUrl::fromUserInput(text.trimmed());
    return address.isValid() ? address : search_for(text);
}

/// Pages are painted without the graphics hardware: nothing moves fast here, a driver that fails
/// takes nobody along, and the window isn't made anew for it. The engine looks at a context that it
/// would share, which a program that shows pages from its start would have made; this one was never
/// set up.
void do_without_graphics_hardware()
{
    static QPointer<QOpenGLContext> context;
    if (context)
        return;
    qputenv("QT_QUICK_BACKEND", "software");
    QLoggingCategory::setFilterRules("qt.webenginecontext=false"); // it would tell so at length
    context = &make_child<QOpenGLContext>(qApp);
    qt_gl_set_global_share_context(context);
}

/// The engine takes the time to describe its pages only if it is told so before its start.
void tell_whether_screen_reader_listens()
{
    if (QAccessible::isActive())
        qputenv("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");
}

} // namespace

/// Holds the page, or says why there is none.
class QtWebPane::Place : public QWidget {
public:
    Place()
        : m_rows(make_child<QVBoxLayout>(this))
        , m_message(make_child<QLabel>(this))
    {
        setFocusPolicy(Qt::StrongFocus);
        m_rows.setContentsMargins(0, 0, 0, 0);
        m_message.setTextFormat(Qt::PlainText);
        m_message.setWordWrap(true);
        m_message.setAlignment(Qt::AlignCenter);
        m_message.setObjectName("webMessage");
        m_message.hide();
        m_rows.addWidget(&m_message);
    }
    void say(const QString& text)
    {
        m_message.setText(text);
        m_message.show();
    }
    void show_page(QWidget& page)
    {
        m_message.hide();
        m_rows.addWidget(&page);
        setFocusProxy(&page);
    }

protected:
    // These keys are the page's that has them, whatever the menu is for by now: of a document that
    // is all the user can do to have it read.
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::ShortcutOverride)
            return QWidget::event(event);
        const auto& key = static_cast<const QKeyEvent&>(*event);
        event->setAccepted(!m_message.isVisible()
            && (key.matches(QKeySequence::Copy) || key.matches(QKeySequence::SelectAll)));
        return true;
    }

private:
    QVBoxLayout& m_rows;
    QLabel& m_message;
};

QtWebPane::QtWebPane(const WebPaneParts& parts)
    : m_parts(parts)
    , m_place(&make_child<Place>())
    , m_patience(whole_patience)
{
}

QtWebPane::~QtWebPane()
{
    m_view.reset();
    delete m_place.data();
}

QWidget& QtWebPane::widget() const
{
    return *m_place;
}

PageView& QtWebPane::view()
{
    if (m_view)
        return *m_view;
    PageHost host;
    host.open_outside = [this](const QUrl& address) {
        attempt([&] { m_parts.shell.navigate(from_qt(address.toString(QUrl::FullyEncoded))); });
    };
    host.document_helper = to_qt(m_parts.document_helper);
    attempt_each([&] { host.document_failure = to_qt(m_parts.texts.LoadResString(2344)); },
        [&] { host.confinement_failure = to_qt(m_parts.texts.LoadResString(2346)); });
    try {
        m_view = m_parts.make_view(*m_place, host);
    } catch (const Failure& failure) {
        m_place->say(to_qt(failure.what()));
        throw;
    }
    m_view->navigated = [this] {
        if (NavigateComplete2)
            attempt([this] { NavigateComplete2(); });
    };
    m_place->show_page(m_view->widget());
    return *m_view;
}

void QtWebPane::Navigate(const std::string& url)
{
    view().load(address_of(to_qt(url)));
}

void QtWebPane::GoSearch()
{
    view().load(QUrl(search_page));
}

void QtWebPane::GoBack()
{
    if (!m_view || !m_view->go_back())
        throw Failure("there is no page before this one");
}

void QtWebPane::GoForward()
{
    if (!m_view || !m_view->go_forward())
        throw Failure("there is no page after this one");
}

void QtWebPane::Stop()
{
    if (m_view)
        m_view->stop();
}

void QtWebPane::Refresh()
{
    if (m_view)
        m_view->refresh();
}

std::string QtWebPane::LocationURL() const
{
    return m_view ? from_qt(m_view->location()) : std::string();
}

void QtWebPane::ExecWB(WebCommand command)
{
    if (!m_view)
        return;
    switch (command) {
    case WebCommand::copy:
        return copy();
    case WebCommand::select_all:
        return select_all();
    case WebCommand::save:
        return save();
    case WebCommand::print:
        return m_view->print();
    }
}

// A copy that comes to nothing isn't told by anybody, so it isn't waited for where there is no
// selection, or no text in it.
void QtWebPane::copy()
{
    const std::optional<bool> all_has_text = std::exchange(m_all_has_text, std::nullopt);
    if (!all_has_text && !m_view->has_selection())
        return;
    m_view->copy();
    if (!all_has_text.value_or(true))
        return;
    const milliseconds kept = m_patience == whole_patience ? kept_for_all : milliseconds(0);
    wait_until([this] { return !m_parts.clipboard.GetText(Patience::none).empty(); }, kept);
}

void QtWebPane::select_all()
{
    m_view->selected = [this](bool has_text) { m_all_has_text = has_text; };
    m_view->select_all();
    wait_until([this] { return m_all_has_text.has_value(); });
    m_view->selected = nullptr; // too late
}

void QtWebPane::save()
{
    FileDialogRequest request;
    request.Filter = m_parts.texts.LoadResString(2345);
    request.overwrite_prompt = true;
    if (const auto path = m_parts.dialogs.ShowSave(request))
        m_view->save(to_qt(*path));
}

/// The page is in another process, and what it copies comes through messages of the windows.
template <class Condition> void QtWebPane::wait_until(Condition&& is_so, milliseconds kept)
{
    const MessageGate::Shut shut(m_parts.gate);
    QTimer look;
    look.start(look_interval);
    QElapsedTimer time;
    time.start();
    QEventLoop loop;
    while (!is_so() && !time.hasExpired((m_patience - kept).count()))
        loop.processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::ExcludeUserInputEvents);
    m_patience = std::max(milliseconds(0), m_patience - milliseconds(time.elapsed()));
    if (std::exchange(m_patience_returns, true))
        return;
    m_parts.gate.post([pane = QPointer(this)] { // runs after the present handler
        if (pane) {
            pane->m_patience = whole_patience;
            pane->m_patience_returns = false;
        }
    });
}

std::function<std::unique_ptr<PageView>(QWidget&, const PageHost&)> late_page_views(
    std::string path, const Texts& texts)
{
    return [path = std::move(path), &texts](QWidget& parent, const PageHost& host) {
        do_without_graphics_hardware();
        tell_whether_screen_reader_listens();
        void* make = nullptr;
        try {
            make = late_function(path, make_page_view_name);
        } catch (const Failure& failure) {
            throw Failure(texts.with_value(2343, failure.what()));
        }
        return std::unique_ptr<PageView>(reinterpret_cast<MakePageView*>(make)(parent, host));
    };
}

} // namespace tessavox
