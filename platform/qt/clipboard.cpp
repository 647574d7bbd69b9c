#include "platform/qt/clipboard.h"

#include "platform/failure.h"
#include "platform/qt/copied_text.h"
#include "platform/qt/text_conversion.h"

#include <QApplication>
#include <QClipboard>

#include <algorithm>

namespace tessavox {
namespace {

constexpr std::chrono::milliseconds patience_of_a_user(300);
/// An owner that is only slow gets so long before a reader who doesn't wait asks it again.
constexpr std::chrono::milliseconds patience_between_questions(5'000);

bool offers_text(const QMimeData& offered)
{
    const QStringList& formats = text_formats();
    return std::any_of(formats.begin(), formats.end(),
        [&](const QString& format) { return offered.hasFormat(format); });
}

const QMimeData& offered_by_the_desktop()
{
    static const QMimeData nothing;
    const QMimeData* offered = QApplication::clipboard()->mimeData();
    return offered ? *offered : nothing;
}

} // namespace

QtClipboard::QtClipboard()
    : m_fetch(ClipboardFetch::of_this_session())
{
    if (!m_fetch) {
        connect(QApplication::clipboard(), &QClipboard::dataChanged, this, [this] { changed(); });
        return;
    }
    m_fetch->when_changed([this] { changed(); });
    m_fetch->when_done([this] { tell(); });
}

void QtClipboard::changed()
{
    m_is_current = false;
    m_text = {};
    if (m_fetch)
        m_fetch->stop();
    // What the windows have copied comes back through the session while they answer it, so nobody
    // may wait for it.
    if (is_ours_to_ask() && QApplication::clipboard()->ownsClipboard())
        m_fetch->start();
    tell();
}

TextSlice QtClipboard::GetText(Patience patience)
{
    if (!m_is_current && is_ours_to_ask()) {
        fetch(patience);
    } else if (!m_is_current) {
        const QString text = copied_text(offered_by_the_desktop());
        if (!text.isEmpty() || !offers_text(offered_by_the_desktop()))
            keep(as_utf16(text));
    }
    return m_text;
}

bool QtClipboard::has_text()
{
    if (m_is_current)
        return !m_text.empty();
    if (!is_ours_to_ask())
        return offers_text(offered_by_the_desktop());
    fetch(Patience::none);
    return m_is_current ? !m_text.empty() : m_fetch->offers_text();
}

void QtClipboard::SetText(const TextSlice& text)
{
    if (m_fetch) {
        m_fetch->offer(text);
    } else {
        QApplication::clipboard()->setText(as_qstring(text.view()));
        if (!text.empty() && !QApplication::clipboard()->ownsClipboard())
            throw Failure("the clipboard takes no text");
    }
    keep(text);
}

void QtClipboard::Clear()
{
    SetText({});
}

bool QtClipboard::is_ours_to_ask() const
{
    return m_fetch && !m_fetch->is_ours();
}

void QtClipboard::fetch(Patience patience)
{
    const bool waits = patience == Patience::some;
    const auto bound = waits ? patience_of_a_user : patience_between_questions;
    m_fetch->advance();
    if (!m_fetch->is_started() || (!m_fetch->is_done() && m_fetch->since_start() > bound))
        m_fetch->start();
    if (waits)
        m_fetch->wait(patience_of_a_user);
    if (m_fetch->is_done())
        keep(m_fetch->take_text());
}

void QtClipboard::tell() const
{
    if (m_notice)
        m_notice();
}

void QtClipboard::keep(TextSlice text)
{
    m_text = std::move(text);
    m_is_current = true;
}

} // namespace tessavox
