// Puts the program together: the one file that knows its logic, its windows and its voice.
#include "app/start_instance.h"
#include "app/tessavox.h"
#include "forms/string_table.h"
#include "platform/conversion/word_processor_files.h"
#include "platform/files/disk_file_store.h"
#include "platform/files/program_folders.h"
#include "platform/files/recovery_folder.h"
#include "platform/qt/blocking_work.h"
#include "platform/qt/clipboard.h"
#include "platform/qt/end_signals.h"
#include "platform/qt/file_dialogs.h"
#include "platform/qt/font_dialogs.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/hot_keys.h"
#include "platform/qt/late_printer.h"
#include "platform/qt/message_boxes.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/outside_changes.h"
#include "platform/qt/program_icons.h"
#include "platform/qt/program_style.h"
#include "platform/qt/rich_text_pane.h"
#include "platform/qt/screen.h"
#include "platform/qt/shell.h"
#include "platform/qt/skin.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/tray.h"
#include "platform/qt/user_language.h"
#include "platform/qt/web_pane.h"
#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/speech_service.h"

#include <QApplication>
#include <QFont>
#include <QIcon>

#include <csignal>
#include <filesystem>
#include <span>
#include <string>

namespace {

using namespace tessavox;

/// Of the two that a Wayland session offers, X11 is the one that places the dock bar and tells when
/// something is copied in another program. Whoever has chosen already has chosen well.
void choose_desktop()
{
    if (qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb;wayland");
}

void set_up(QApplication& application)
{
    application.setApplicationName("Tessavox");
    application.setDesktopFileName("tessavox");
    application.setQuitOnLastWindowClosed(false); // the logic knows when all has been unloaded
    QApplication::setStyle(std::make_unique<ProgramStyle>().release()); // which it then owns
    QFont::insertSubstitution("Comic Sans MS", "Comic Neue");
}

void quit()
{
    QCoreApplication::exit(); // not quit(), which would ask every window once more
}

/// A program that belongs to this one and lies beside it.
std::string helper_path(const char* name)
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path() / name;
}

/// Started before the toolkit, so that the voices are known when the first window asks for them.
std::shared_ptr<voice::SpeechEngines> start_engines()
{
    voice::HelperOptions options;
    options.path = helper_path("tessavox-voice-helper");
    options.shipped_voices
        = find_app_folder(helper_path(""), TESSAVOX_BUILD_FOLDER, TESSAVOX_SOURCE_SHARE)
        + "/voices";
    return voice::start_helper_engines(std::move(options));
}

std::unique_ptr<SpeechService> make_speech(
    const Forms::Post& post, const Texts& texts, std::shared_ptr<voice::SpeechEngines> engines)
{
    voice::SpeechServiceOptions options;
    options.post = post;
    options.default_output_name = texts.LoadResString(2300);
    return voice::make_speech_service(std::move(options), std::move(engines));
}

int run(DiskFileStore& files, std::shared_ptr<voice::SpeechEngines> engines,
    const std::string& command_line)
{
    const std::string app_folder = find_app_folder(from_qt(QCoreApplication::applicationDirPath()),
        TESSAVOX_BUILD_FOLDER, TESSAVOX_SOURCE_SHARE);
    QApplication::setWindowIcon(QIcon(to_qt(app_folder + "/tessavox.svg")));
    use_icons_of(app_folder + "/icons");

    const StringTable texts(strings_of_language(user_language_id()));
    speak_by_toolkit(texts.LoadResString(2363)); // its name there
    MessageGate gate;
    const Forms::Post post = [&gate](std::function<void()> call) { gate.post(std::move(call)); };
    QtFormWindows windows(gate);
    QtClipboard clipboard;
    QtOutsideChanges changes(clipboard);
    QtMessageBoxes message_boxes;
    QtFileDialogs dialogs(files, texts, find_recovery_folder());
    QtFontDialogs font_dialogs(texts);
    QtScreen screen;
    QtTray tray(windows);
    const std::unique_ptr<HotKeys> hot_keys = make_hot_keys(post);
    QtShell shell(app_folder);
    QtSkin skin(files);
    QtBlockingWork blocking_work(gate);
    QtRichTextPanes panes(clipboard, files);
    QtWebPanes web_panes(
        { clipboard, dialogs, shell, texts, gate, helper_path("tessavox-document-helper"),
            late_page_views(helper_path("tessavox-web.so"), texts) });
    LatePrinter printer(helper_path("tessavox-printing.so"));
    RecoveryFolder recovery(find_recovery_folder());
    WordProcessorFiles word_processor(
        files, blocking_work, texts, helper_path("tessavox-document-helper"));
    const std::unique_ptr<SpeechService> speech = make_speech(post, texts, std::move(engines));
    Platform platform{ windows, post, quit, [] { QCoreApplication::processEvents(); }, files,
        clipboard, changes, message_boxes, dialogs, font_dialogs, windows, screen, tray, *hot_keys,
        shell, skin, blocking_work, panes, web_panes, printer, recovery, word_processor, *speech,
        texts, prepare_config_folder(find_config_home(), app_folder + "/conf"), app_folder,
        command_line };

    Tessavox tessavox(platform);
    const EndSignals end_signals(gate, [&tessavox] {
        // A dialog that outlives the main window doesn't hold the end up.
        attempt([&] { tessavox.main_window().Unload(); });
        if (!tessavox.main_window().is_loaded())
            quit();
    });
    blocking_work.end_is_wanted = [&end_signals] { return end_signals.is_wanted(); };
    // In the message loop, so that what comes during the first messages waits for the end of Main.
    QMetaObject::invokeMethod(
        qApp, [&tessavox] { tessavox.Main(); }, Qt::QueuedConnection);
    const int result = QCoreApplication::exec();
    // Calls that were still waiting hold forms, which must not outlive all this.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return result;
}

/// All arguments, joined by blanks.
std::string joined(std::span<char*> arguments)
{
    std::string line;
    for (const char* argument : arguments)
        line += (line.empty() ? "" : " ") + std::string(argument);
    return line;
}

} // namespace

int main(int count, char** arguments)
{
    // A limit on file sizes then fails the write, as a full disk does.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    const std::string command_line
        = joined(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
    DiskFileStore files;
    // A start that only hands a command to the copy that runs needs no toolkit.
    if (pass_command_on(files, config_folder_in(find_config_home()) + "/", command_line))
        return 0;
    std::shared_ptr<voice::SpeechEngines> engines = start_engines();
    choose_desktop();
    QApplication application(count, arguments);
    set_up(application);
    return run(files, std::move(engines), command_line);
}
