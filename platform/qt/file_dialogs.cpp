#include "platform/qt/file_dialogs.h"

#include "platform/qt/text_conversion.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>

namespace tessavox {

QStringList name_filters(const std::string& filter)
{
    const QStringList parts = to_qt(filter).split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        static const QRegularExpression trailing_patterns("\\s*\\([^()]*\\)\\s*$");
        QStringList patterns = parts[i + 1].split(';', Qt::SkipEmptyParts);
        for (QString& pattern : patterns) {
            pattern = pattern.trimmed();
            if (pattern == "*.*")
                pattern = "*";
        }
        filters.append(
            QString(parts[i]).remove(trailing_patterns) + " (" + patterns.join(' ') + ")");
    }
    return filters;
}

namespace {

void begin_with(QFileDialog& dialog, const FileDialogRequest& request, const QString& folder)
{
    dialog.setObjectName("fileDialog");
    if (!request.DialogTitle.empty())
        dialog.setWindowTitle(to_qt(request.DialogTitle));
    const QStringList filters = name_filters(request.Filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        const qsizetype wanted = request.FilterIndex - 1;
        dialog.selectNameFilter(filters.value(wanted, filters.front()));
    }
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwrite_prompt);
    const QFileInfo file(to_qt(request.FileName));
    if (!request.FileName.empty() && file.isAbsolute() && file.dir().exists())
        dialog.setDirectory(file.dir());
    else if (!folder.isEmpty())
        dialog.setDirectory(folder);
    if (!request.FileName.empty())
        dialog.selectFile(file.fileName());
}

/// The path that the user settles on, in a folder that exists; nothing if the user gives up.
QString chosen_path(QFileDialog& dialog)
{
    while (dialog.exec() == QDialog::Accepted) {
        const QString path = dialog.selectedFiles().value(0);
        if (QFileInfo(path).dir().exists() && !QFileInfo(path).isDir())
            return path;
    }
    return {};
}

/// Begins in `folder` unless the request names one, and leaves there the folder of what was chosen.
std::optional<std::string> ask_for_path(const FileDialogRequest& request,
    QFileDialog::AcceptMode purpose, QFileDialog::FileMode mode, QString& folder)
{
    QFileDialog dialog(QApplication::activeWindow());
    dialog.setAcceptMode(purpose);
    dialog.setFileMode(mode);
    begin_with(dialog, request, folder);
    const QString path = chosen_path(dialog);
    if (path.isEmpty())
        return std::nullopt;
    folder = QFileInfo(path).absolutePath();
    return from_qt(path);
}

} // namespace

std::optional<std::string> QtFileDialogs::ShowOpen(const FileDialogRequest& request)
{
    return ask_for_path(request, QFileDialog::AcceptOpen, QFileDialog::ExistingFile, m_folder);
}

std::optional<std::string> QtFileDialogs::ShowSave(const FileDialogRequest& request)
{
    return ask_for_path(request, QFileDialog::AcceptSave, QFileDialog::AnyFile, m_folder);
}

} // namespace tessavox
