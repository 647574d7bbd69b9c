#include "platform/qt/copied_forms.h"

#include "platform/qt/copied_text.h"
#include "platform/qt/text_conversion.h"
#include "platform/text_limits.h"

#include <QUrl>

#include <algorithm>
#include <utility>

namespace tessavox {
namespace {

constexpr const char* uri_list = "text/uri-list";
constexpr const char* plain = "text/plain";
constexpr const char* page = "text/html";

/// Of a page or of a list of files; what is larger would take minutes to be understood.
constexpr std::size_t most_other_bytes = std::size_t(4) << 20;

constexpr TextForm forms[] = {
    { uri_list, uri_list, QStringConverter::Utf8, most_other_bytes },
    { "UTF8_STRING", plain, QStringConverter::Utf8, most_text_bytes },
    { "text/plain;charset=utf-8", plain, QStringConverter::Utf8, most_text_bytes },
    { "STRING", plain, QStringConverter::Latin1, most_text_bytes },
    { plain, plain, QStringConverter::Utf8, most_text_bytes },
    { page, page, QStringConverter::Utf8, most_other_bytes },
};

/// Up to here a text is moved when it grows: that takes less than a millisecond.
constexpr std::size_t most_units_to_move = 500'000;

} // namespace

std::span<const TextForm> text_forms()
{
    return forms;
}

// Room that nothing was written to takes no memory.
void ComingText::add(const QByteArray& piece)
{
    const std::size_t before = m_text.size();
    const std::size_t after
        = before + static_cast<std::size_t>(m_decoder.requiredSpace(piece.size()));
    if (after > m_text.capacity() && after > most_units_to_move)
        m_text.reserve(std::max(after, most_text_bytes + 1));
    m_text.resize(after);
    QChar* const start = reinterpret_cast<QChar*>(m_text.data());
    m_text.resize(
        static_cast<std::size_t>(m_decoder.appendToBuffer(start + before, piece) - start));
}

TextSlice ComingText::take()
{
    const std::size_t length = m_text.size();
    m_text += u' ';
    return { std::make_shared<const std::u16string>(std::move(m_text)), 0, length };
}

void CopiedForms::choose(const std::function<bool(const TextForm&)>& is_offered)
{
    const char* format = nullptr;
    for (const TextForm& form : forms) {
        const bool is_known = format && format != uri_list; // a better form of the same text
        if (is_known || !is_offered(form))
            continue;
        format = form.format;
        m_to_ask.push_back(&form);
    }
    m_offer_text = !m_to_ask.empty();
}

const TextForm* CopiedForms::next()
{
    if (m_to_ask.empty())
        return nullptr;
    m_asked = m_to_ask.front();
    m_to_ask.erase(m_to_ask.begin());
    m_size = 0;
    if (m_asked->format == plain)
        m_coming.emplace(m_asked->encoding);
    return m_asked;
}

bool CopiedForms::add(const QByteArray& piece)
{
    m_size += static_cast<std::size_t>(piece.size());
    if (m_size > m_asked->most_bytes)
        return false;
    if (m_coming)
        m_coming->add(piece);
    else
        m_bytes += piece;
    return true;
}

void CopiedForms::complete()
{
    if (m_coming)
        m_plain = m_coming->take();
    else if (!m_bytes.isEmpty())
        m_others.setData(m_asked->format, std::exchange(m_bytes, {}));
    m_coming.reset();
    const QList<QUrl> urls = m_others.urls();
    if (!urls.isEmpty() && urls.front().isLocalFile())
        m_to_ask.clear(); // files need no other form
}

TextSlice CopiedForms::take_text()
{
    if (m_plain.empty())
        return as_utf16(copied_text(m_others));
    return std::exchange(m_plain, {});
}

} // namespace tessavox
