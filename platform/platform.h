// Everything outside the program, as it is handed around.
#pragma once

#include "platform/blocking_work.h"
#include "platform/clipboard.h"
#include "platform/controls/form.h"
#include "platform/document_arrangement.h"
#include "platform/file_dialogs.h"
#include "platform/file_store.h"
#include "platform/font_dialogs.h"
#include "platform/hot_keys.h"
#include "platform/message_boxes.h"
#include "platform/outside_changes.h"
#include "platform/printer.h"
#include "platform/recovery_copies.h"
#include "platform/rich_text_pane.h"
#include "platform/screen.h"
#include "platform/shell.h"
#include "platform/skin.h"
#include "platform/speech_voice.h"
#include "platform/texts.h"
#include "platform/tray.h"
#include "platform/web_pane.h"
#include "platform/word_processor.h"

#include <string>

namespace tessavox {

/// Everything outside, for one process. Paths are UTF-8.
struct Platform {
    FormWindows& windows;
    Forms::Post post; // runs a call on the interface thread after the present handler
    Handler quit; // ends the message loop
    Handler DoEvents; // lets waiting messages run
    FileStore& files;
    Clipboard& clipboard;
    OutsideChanges& changes;
    MessageBoxes& message_boxes;
    FileDialogs& dialogs;
    FontDialogs& font_dialogs;
    DocumentArrangement& arrangement;
    Screen& screen;
    Tray& tray;
    HotKeys& hot_keys;
    Shell& shell;
    Skin& skin;
    BlockingWork& blocking_work;
    RichTextPanes& panes;
    WebPanes& web_panes;
    Printer& printer;
    RecoveryCopies& recovery;
    WordProcessor& word_processor;
    SpeechService& speech;
    const Texts& texts;
    std::string config_folder; // ends without a separator: ".../tessavox/conf"
    std::string app_folder; // the shipped data
    std::string command_line; // all arguments, joined by blanks
};

} // namespace tessavox
