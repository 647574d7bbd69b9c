// The smaller things outside the program that its logic uses, one interface each, and the bundle in
// which they are handed around.
#pragma once

#include "platform/controls/form.h"
#include "platform/rich_text_pane.h"
#include "platform/speech_voice.h"
#include "platform/text.h"

#include <memory>
#include <optional>
#include <string>

namespace tessavox {

/// Small files, read and written whole.
class FileStore {
public:
    virtual ~FileStore() = default;
    /// The bytes of a regular file of ordinary size (64 MiB at most).
    /// @throws Failure if it is missing, unreadable, larger or no regular file. Never blocks on a
    /// pipe or a device.
    virtual std::string read(const std::string& path) = 0;
    /// Replaces or creates the file. Its old content stays whole if anything fails.
    /// @throws Failure if it can't be written.
    virtual void write(const std::string& path, const std::string& bytes) = 0;
};

/// Text on the clipboard; other content counts as none.
class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// The empty text if there is none.
    virtual TextSlice GetText() = 0;
};

enum class MessageButtons { ok, yes_no_cancel };
enum class MessageIcon { none, question };
enum class MessageAnswer { ok, yes, no, cancel };

class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    /// Blocks until the user answers. Closing the box counts as cancel, or as ok if that is all.
    virtual MessageAnswer show(
        const std::string& text, const std::string& title, MessageButtons buttons, MessageIcon icon)
        = 0;
};

/// What a file dialog is asked for. The names are those of the well-known common dialog.
struct FileDialogRequest {
    std::string DialogTitle;
    std::string Filter; // "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav"
    int FilterIndex = 1; // counted from 1
    std::string FileName; // what the dialog begins with
    bool overwrite_prompt = false; // ask before an existing file is chosen
};

class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    /// The chosen path, or nothing if the user cancels. ShowOpen gives existing files only; the
    /// folder of a saved path exists. No extension is added.
    virtual std::optional<std::string> ShowOpen(const FileDialogRequest& request) = 0;
    virtual std::optional<std::string> ShowSave(const FileDialogRequest& request) = 0;
};

enum class MousePointer { normal = 0, hourglass = 11 };

class Screen {
public:
    virtual ~Screen() = default;
    virtual void set_MousePointer(MousePointer pointer) = 0;
    /// Whether an icon of ours in the system tray offers a way back to a hidden window.
    virtual bool has_tray_icon() const = 0;
};

class RichTextPanes {
public:
    virtual ~RichTextPanes() = default;
    virtual std::unique_ptr<RichTextPane> create() = 0;
};

/// Everything outside, for one process. Paths are UTF-8.
struct Platform {
    FormWindows& windows;
    Forms::Post post; // runs a call on the interface thread after the present handler
    Handler quit; // ends the message loop
    FileStore& files;
    Clipboard& clipboard;
    MessageBoxes& message_boxes;
    FileDialogs& dialogs;
    Screen& screen;
    RichTextPanes& panes;
    SpeechService& speech;
    std::string config_folder; // ends without a separator: ".../tessavox/conf"
    std::string app_folder; // the shipped data
    std::string command_line; // all arguments, joined by blanks
};

} // namespace tessavox
