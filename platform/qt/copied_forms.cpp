#include "platform/qt/copied_forms.h"

#include "platform/qt/copied_text.h"
#include "platform/qt/text_conversion.h"
#include "platform/text_limits.h"

#include <QStringDecoder>
#include <QUrl>

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

/// Without a second copy of a long text.
TextSlice decoded(const QByteArray& bytes, QStringConverter::Encoding encoding)
{
    QStringDecoder decoder(encoding);
    std::u16string text(static_cast<std::size_t>(decoder.requiredSpace(bytes.size())), u'\0');
    QChar* const start = reinterpret_cast<QChar*>(text.data());
    text.resize(static_cast<std::size_t>(decoder.appendToBuffer(start, bytes) - start));
    if (text.size() < text.capacity() / 2)
        text.shrink_to_fit(); // nearly all characters took several bytes
    return text;
}

} // namespace

std::span<const TextForm> text_forms()
{
    return forms;
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
    const TextForm* const form = m_to_ask.front();
    m_to_ask.erase(m_to_ask.begin());
    return form;
}

void CopiedForms::add(const TextForm& form, const QByteArray& bytes)
{
    if (form.format == plain)
        m_plain = decoded(bytes, form.encoding);
    else if (!bytes.isEmpty())
        m_others.setData(form.format, bytes);
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
