#include "platform/qt/file_dialogs.h"

#include "platform/failure.h"
#include "platform/qt/document_check.h"
#include "platform/qt/message_boxes.h"
#include "platform/qt/text_conversion.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <functional>
#include <utility>

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

/// The text of that id, which is about a file; its name alone where the table has a hole.
QString text_about(const QString& path, int id, const Texts& texts)
{
    const std::string name = from_qt(QFileInfo(path).fileName());
    std::string text = name;
    attempt([&] { text = texts.with_value(id, name); });
    return to_qt(text);
}

/// What to say of a file that can't be written; null for one that can.
QString objection_to_writing(const QString& path, FileStore& files, const Texts& texts)
{
    constexpr int not_writable_id = 2301;
    constexpr int no_folder_id = 2302;
    const WriteObstacle obstacle = files.obstacle_to_writing(from_qt(path));
    if (obstacle == WriteObstacle::none)
        return {};
    return text_about(
        path, obstacle == WriteObstacle::no_folder ? no_folder_id : not_writable_id, texts);
}

/// What to say of a file that can't be opened as a document; null for one that can.
QString objection_to_opening(const QString& path, FileStore& files, const Texts& texts)
{
    constexpr int text_ids[] = { 0, 2354, 2355, 2356, 2361 }; // by ReadObstacle
    // A page is shown and not loaded, so nothing is too long for it.
    if (path.endsWith(".pdf", Qt::CaseInsensitive))
        return {};
    const ReadObstacle obstacle = obstacle_to_document(files, from_qt(path));
    if (obstacle == ReadObstacle::none)
        return {};
    return text_about(path, text_ids[static_cast<int>(obstacle)], texts);
}

/// Asks until the user chooses a file to which there is no objection, or none.
class ChoiceDialog : public QFileDialog {
public:
    /// What to say of a file that can't be chosen; null for one that can.
    using Objection = std::function<QString(const QString& path)>;

    explicit ChoiceDialog(Objection objection)
        : QFileDialog(QApplication::activeWindow())
        , m_objection(std::move(objection))
    {
    }

    bool ask()
    {
        while (exec() == QDialog::Accepted)
            if (is_possible())
                return true;
        return false;
    }

    /// Puts a folder among the places that are offered beside the files.
    void offer(const QString& folder)
    {
        if (folder.isEmpty() || !QFileInfo(folder).isDir())
            return;
        QList<QUrl> places = sidebarUrls();
        places.append(QUrl::fromLocalFile(folder));
        setSidebarUrls(places);
    }

protected:
    void accept() override
    {
        // The desktop's own dialog is closed already when this comes; it is opened again. A folder
        // is opened, not chosen.
        const bool is_the_desktops = !layout();
        if (is_the_desktops || QFileInfo(selectedFiles().value(0)).isDir() || is_possible())
            QFileDialog::accept();
    }

private:
    bool is_possible()
    {
        const QString objection = m_objection(selectedFiles().value(0));
        if (!objection.isNull())
            QtMessageBoxes().show(
                from_qt(objection), application_title, MessageButtons::ok, MessageIcon::none);
        return objection.isNull();
    }

    Objection m_objection;
};

} // namespace

std::optional<std::string> QtFileDialogs::ShowOpen(const FileDialogRequest& request)
{
    ChoiceDialog dialog([this, &request](const QString& path) {
        return request.must_be_text ? objection_to_opening(path, m_files, m_texts) : QString();
    });
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    begin_with(dialog, request, m_folder);
    if (request.must_be_text)
        dialog.offer(to_qt(m_recovery_folder));
    return dialog.ask() ? chosen(dialog) : std::nullopt;
}

std::optional<std::string> QtFileDialogs::ShowSave(const FileDialogRequest& request)
{
    ChoiceDialog dialog(
        [this](const QString& path) { return objection_to_writing(path, m_files, m_texts); });
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    begin_with(dialog, request, m_folder);
    return dialog.ask() ? chosen(dialog) : std::nullopt;
}

std::optional<std::string> QtFileDialogs::chosen(const QFileDialog& dialog)
{
    const QString path = dialog.selectedFiles().value(0);
    m_folder = QFileInfo(path).absolutePath();
    return from_qt(path);
}

} // namespace tessavox
