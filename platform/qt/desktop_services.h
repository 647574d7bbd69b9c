// Clipboard, message boxes, file dialogs and mouse pointer, as the desktop offers them.
#pragma once

#include "platform/clipboard.h"
#include "platform/file_dialogs.h"
#include "platform/message_boxes.h"
#include "platform/rich_text_pane.h"
#include "platform/screen.h"

#include <QObject>
#include <QString>

class QWidget;

namespace tessavox {

/// The text is fetched when it is first asked for after a change, and then kept. Another program
/// that owns the clipboard but doesn't answer counts as one without text.
class QtClipboard : public QObject, public Clipboard {
public:
    QtClipboard();
    TextSlice GetText() override;
    bool has_text() override;

private:
    TextSlice m_text;
    bool m_is_current = false;
};

class QtMessageBoxes : public MessageBoxes {
public:
    MessageAnswer show(const std::string& text, const std::string& title, MessageButtons buttons,
        MessageIcon icon) override;
};

class QtFileDialogs : public FileDialogs {
public:
    std::optional<std::string> ShowOpen(const FileDialogRequest& request) override;
    std::optional<std::string> ShowSave(const FileDialogRequest& request) override;

private:
    QString m_folder; // of the file chosen last
};

class QtScreen : public Screen {
public:
    ~QtScreen() override;
    void set_MousePointer(MousePointer pointer) override;

private:
    bool m_is_busy = false;
};

class QtRichTextPanes : public RichTextPanes {
public:
    std::unique_ptr<RichTextPane> create() override;
};

/// The name filters of a filter text such as "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav". Every
/// file has a name that "*.*" stands for, with or without a dot.
QStringList name_filters(const std::string& filter);

} // namespace tessavox
