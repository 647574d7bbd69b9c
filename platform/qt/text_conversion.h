// Between the program's texts and Qt's.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace tessavox {

inline QString to_qt(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

inline std::string from_qt(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return { utf8.constData(), static_cast<std::size_t>(utf8.size()) };
}

inline QString as_qstring(std::u16string_view text)
{
    return QString(
        reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

inline std::u16string as_utf16(const QString& text)
{
    return { reinterpret_cast<const char16_t*>(text.utf16()),
        static_cast<std::size_t>(text.size()) };
}

/// A caption as the title of a window. Qt takes "[*]" for a mark of its own; a file may be called
/// so.
inline QString as_title(const std::string& caption)
{
    return to_qt(caption).replace("[*]", "[*][*]");
}

/// The caption that such a title was made of.
inline QString caption_of(QString title)
{
    return title.replace("[*][*]", "[*]");
}

} // namespace tessavox
