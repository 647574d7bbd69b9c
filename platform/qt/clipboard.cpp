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
    : m_fetch(ClipboardFetch::is_possible() ? std::make_unique<ClipboardFetch>() : nullptr)
{
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        m_is_current = false;
        m_text = {};
        if (m_fetch)
            m_fetch->stop();
        tell();
    });
    if (m_fetch)
        m_fetch->when_done([this] { tell(); });
}

TextSlice QtClipboard::GetText(Patience patience)
{
    if (!m_is_current && is_ours_to_ask()) {
        fetch(patience);
    } else if (!m_is_current) {
        const QString text = copied_text(offered_by_the_desktop());
        if (!text.isEmpty() || !offers_text(offered_by_the_desktop()))
            keep(text);
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

void QtClipboard::SetText(std::u16string_view text)
{
    if (text.empty())
        return Clear();
    const QString wanted = as_qstring(text);
    QApplication::clipboard()->setText(wanted);
    if (!QApplication::clipboard()->ownsClipboard())
        throw Failure("the clipboard takes no text");
    keep(wanted);
}

void QtClipboard::Clear()
{
    QApplication::clipboard()->clear();
    keep({});
}

bool QtClipboard::is_ours_to_ask() const
{
    return m_fetch && !QApplication::clipboard()->ownsClipboard();
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
        keep(copied_text(m_fetch->offered()));
}

void QtClipboard::tell() const
{
    if (m_notice)
        m_notice();
}

void QtClipboard::keep(const QString& text)
{
    m_text = as_utf16(text);
    m_is_current = true;
}

} // namespace tessavox
