#include "platform/qt/file_dialogs.h"

#include "platform/failure.h"
#include "platform/qt/message_boxes.h"
#include "platform/qt/text_conversion.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

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

/// What to say of a file that can't be written; null for one that can.
QString objection_to(const QString& path, FileStore& files, const Texts& texts)
{
    constexpr int not_writable_id = 2301;
    constexpr int no_folder_id = 2302;
    const WriteObstacle obstacle = files.obstacle_to_writing(from_qt(path));
    if (obstacle == WriteObstacle::none)
        return {};
    QString text = "%1"; // enough where the table has a hole
    attempt([&] {
        text = to_qt(texts.LoadResString(
            obstacle == WriteObstacle::no_folder ? no_folder_id : not_writable_id));
    });
    return text.replace("%1", QFileInfo(path).fileName());
}

void tell(const QString& text)
{
    QtMessageBoxes().show(from_qt(text), application_title, MessageButtons::ok, MessageIcon::none);
}

/// Stays open until the user chooses a file that can be opened as a document, or none.
class OpenDialog : public QFileDialog {
public:
    OpenDialog(QWidget* parent, FileStore& files, const Texts& texts, bool must_be_text)
        : QFileDialog(parent)
        , m_files(files)
        , m_texts(texts)
        , m_must_be_text(must_be_text)
    {
        setAcceptMode(AcceptOpen);
        setFileMode(ExistingFile);
    }

    /// Says so if not.
    bool is_possible()
    {
        constexpr int texts[] = { 0, 2354, 2355, 2356 }; // by ReadObstacle
        const QString path = selectedFiles().value(0);
        // A page is shown and not loaded, so nothing is too long for it.
        if (!m_must_be_text || path.endsWith(".pdf", Qt::CaseInsensitive))
            return true;
        const ReadObstacle obstacle = m_files.obstacle_to_opening(from_qt(path));
        if (obstacle != ReadObstacle::none)
            attempt([&] {
                tell(to_qt(m_texts.with_value(
                    texts[static_cast<int>(obstacle)], from_qt(QFileInfo(path).fileName()))));
            });
        return obstacle == ReadObstacle::none;
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
        const bool is_the_desktops = !layout();
        if (is_the_desktops || QFileInfo(selectedFiles().value(0)).isDir() || is_possible())
            QFileDialog::accept();
    }

private:
    FileStore& m_files;
    const Texts& m_texts;
    bool m_must_be_text;
};

/// Stays open until the user chooses a file that can be written, or none.
class SaveDialog : public QFileDialog {
public:
    SaveDialog(QWidget* parent, FileStore& files, const Texts& texts)
        : QFileDialog(parent)
        , m_files(files)
        , m_texts(texts)
    {
        setAcceptMode(AcceptSave);
        setFileMode(AnyFile);
    }

    /// Whether the chosen file can be written. Says so if not.
    bool is_possible()
    {
        const QString path = selectedFiles().value(0);
        const QString objection = objection_to(path, m_files, m_texts);
        if (!objection.isNull())
            tell(objection);
        return objection.isNull();
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
    FileStore& m_files;
    const Texts& m_texts;
};

} // namespace

std::optional<std::string> QtFileDialogs::ShowOpen(const FileDialogRequest& request)
{
    OpenDialog dialog(QApplication::activeWindow(), m_files, m_texts, request.must_be_text);
    begin_with(dialog, request, m_folder);
    if (request.must_be_text)
        dialog.offer(to_qt(m_recovery_folder));
    do {
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
    } while (!dialog.is_possible());
    return chosen(dialog);
}

std::optional<std::string> QtFileDialogs::ShowSave(const FileDialogRequest& request)
{
    SaveDialog dialog(QApplication::activeWindow(), m_files, m_texts);
    begin_with(dialog, request, m_folder);
    do {
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
    } while (!dialog.is_possible());
    return chosen(dialog);
}

std::string QtFileDialogs::chosen(const QFileDialog& dialog)
{
    const QString path = dialog.selectedFiles().value(0);
    m_folder = QFileInfo(path).absolutePath();
    return from_qt(path);
}

} // namespace tessavox
