#include "platform/qt/user_language.h"

#include <QLocale>

#include <unicode/uloc.h>

namespace tessavox {

int user_language_id()
{
    const QStringList languages = QLocale::system().uiLanguages();
    if (languages.isEmpty())
        return 0;
    const QByteArray locale = QString(languages.first()).replace('-', '_').toLatin1();
    return static_cast<int>(uloc_getLCID(locale.constData()));
}

} // namespace tessavox
