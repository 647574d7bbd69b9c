#include "platform/qt/clipboard.h"

#include "platform/qt/clipboard_owner.h"

#include <QApplication>
#include <QClipboard>

namespace tessavox {

QtClipboard::QtClipboard()
{
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        m_is_current = false;
        m_text = {};
    });
}

TextSlice QtClipboard::GetText()
{
    if (m_is_current)
        return m_text;
    m_is_current = true;
    const QClipboard& clipboard = *QApplication::clipboard();
    const bool reachable = clipboard.ownsClipboard() || clipboard_owner_answers();
    const QString text = reachable ? clipboard.text() : QString();
    m_text = std::u16string(
        reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()));
    return m_text;
}

bool QtClipboard::has_text()
{
    return !GetText().empty();
}

} // namespace tessavox
