// The desktop's dialogs for choosing a file.
#pragma once

#include <optional>
#include <string>

namespace tessavox {

/// What a file dialog is asked for. The names are those of the well-known common dialog.
struct FileDialogRequest {
    std::string DialogTitle;
    std::string Filter; // "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav"
    int FilterIndex = 1; // counted from 1
    std::string FileName; // what the dialog begins with
    bool overwrite_prompt = false; // ask before an existing file is chosen
    bool must_be_text = false; // refuse, with the reason, what can't be opened as a document
};

class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    /// The chosen path, or nothing if the user cancels. ShowOpen gives existing files only. The
    /// folder of a saved path exists, and what can't be written is refused while the dialog is
    /// open. No extension is added.
    virtual std::optional<std::string> ShowOpen(const FileDialogRequest& request) = 0;
    virtual std::optional<std::string> ShowSave(const FileDialogRequest& request) = 0;
};

} // namespace tessavox
