#include "platform/qt/shell.h"

#include "platform/failure.h"
#include "platform/qt/text_conversion.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace tessavox {
namespace {

enum Result { file_not_found = 2, path_not_found = 3, access_denied = 5, no_association = 31 };

constexpr const char* help_file = "/tessavox.chm";
constexpr const char* help_pages = "/help/index.html";

} // namespace

int QtShell::open(const std::string& path)
{
    const QFileInfo file(
        to_qt(path == m_app_folder + help_file ? m_app_folder + help_pages : path));
    if (!file.dir().exists())
        return path_not_found;
    if (!file.exists())
        return file_not_found;
    if (!file.isReadable())
        return access_denied;
    const bool done = QDesktopServices::openUrl(QUrl::fromLocalFile(file.absoluteFilePath()));
    return done ? opened : no_association;
}

void QtShell::navigate(const std::string& address)
{
    if (!QDesktopServices::openUrl(QUrl(to_qt(address))))
        throw Failure("the desktop has no program for " + address);
}

} // namespace tessavox
