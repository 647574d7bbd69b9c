// Dialogs for choosing a file.
#pragma once

#include "platform/file_dialogs.h"
#include "platform/file_store.h"
#include "platform/texts.h"

#include <QStringList>

class QFileDialog;

namespace tessavox {

class QtFileDialogs : public FileDialogs {
public:
    /// `files` knows what can't be read or written, and `texts` says so. Among the places to open
    /// a document from is `recovery_folder`, once it exists.
    QtFileDialogs(FileStore& files, const Texts& texts, std::string recovery_folder = {})
        : m_files(files)
        , m_texts(texts)
        , m_recovery_folder(std::move(recovery_folder))
    {
    }
    std::optional<std::string> ShowOpen(const FileDialogRequest& request) override;
    std::optional<std::string> ShowSave(const FileDialogRequest& request) override;

private:
    std::optional<std::string> chosen(const QFileDialog& dialog);

    FileStore& m_files;
    const Texts& m_texts;
    std::string m_recovery_folder;
    QString m_folder; // of the file chosen last
};

/// The name filters of a filter text such as "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav". Every
/// file has a name that "*.*" stands for, with or without a dot.
QStringList name_filters(const std::string& filter);

} // namespace tessavox
