// Between the program's texts and Qt's.
#pragma once

#include <QString>

#include <string>

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

} // namespace tessavox
