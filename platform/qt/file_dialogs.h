// Dialogs for choosing a file.
#pragma once

#include "platform/file_dialogs.h"

#include <QStringList>

namespace tessavox {

class QtFileDialogs : public FileDialogs {
public:
    std::optional<std::string> ShowOpen(const FileDialogRequest& request) override;
    std::optional<std::string> ShowSave(const FileDialogRequest& request) override;

private:
    QString m_folder; // of the file chosen last
};

/// The name filters of a filter text such as "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav". Every
/// file has a name that "*.*" stands for, with or without a dot.
QStringList name_filters(const std::string& filter);

} // namespace tessavox
