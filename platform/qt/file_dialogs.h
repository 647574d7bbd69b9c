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
    /// `files` knows what can't be written, and `texts` says so.
    QtFileDialogs(FileStore& files, const Texts& texts)
        : m_files(files)
        , m_texts(texts)
    {
    }
    std::optional<std::string> ShowOpen(const FileDialogRequest& request) override;
    std::optional<std::string> ShowSave(const FileDialogRequest& request) override;

private:
    std::string chosen(const QFileDialog& dialog);

    FileStore& m_files;
    const Texts& m_texts;
    QString m_folder; // of the file chosen last
};

/// The name filters of a filter text such as "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav". Every
/// file has a name that "*.*" stands for, with or without a dot.
QStringList name_filters(const std::string& filter);

} // namespace tessavox
