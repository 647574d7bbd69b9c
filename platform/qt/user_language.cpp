#include "platform/qt/user_language.h"

#include "platform/qt/child_widget.h"
#include "platform/qt/text_conversion.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

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

void speak_by_toolkit(const std::string& language)
{
    auto& texts = make_child<QTranslator>(QCoreApplication::instance());
    if (texts.load("qtbase_" + to_qt(language), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&texts);
}

} // namespace tessavox
