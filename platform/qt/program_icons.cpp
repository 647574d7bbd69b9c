#include "platform/qt/program_icons.h"

#include "platform/qt/text_conversion.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace tessavox {
namespace {

constexpr char search_path[] = "icons";
/// What stands for a theme where the desktop has none. It holds the signs of programs, not those of
/// commands, in many folders.
constexpr char programs_own_theme[] = "hicolor";

struct IconRow {
    const char* control;
    const char* icon;
};

// By the names that desktops know, as far as there are any.
constexpr IconRow commands[] = {
    { "mnuFileNew", "document-new" },
    { "mnuFileOpen", "document-open" },
    { "mnuFileSave", "document-save" },
    { "mnuFileSaveAs", "document-save-as" },
    { "mnuFilePrint", "document-print" },
    { "mnuFileClose", "tessavox-close-document" },
    { "mnuFileExit", "application-exit" },
    { "mnuCtlSpeak", "media-playback-start" },
    { "mnuCtlPause", "media-playback-pause" },
    { "mnuCtlStop", "media-playback-stop" },
    { "mnuCtlclipboard", "tessavox-read-clipboard" },
    { "mnuCtlSaveClipboardTexttoWav", "tessavox-clipboard-to-file" },
    { "mnuCtlSpeaktofile", "tessavox-speak-to-file" },
    { "mnuCtlPlay", "tessavox-play-file" },
    { "mnuEditCut", "edit-cut" },
    { "mnuEditCopy", "edit-copy" },
    { "mnuEditPaste", "edit-paste" },
    { "mnuEditSelectAll", "edit-select-all" },
    { "mnuEditFind", "edit-find" },
    { "mnuFormatFont", "preferences-desktop-font" },
    { "mnuFormatBullets", "format-list-unordered" },
    { "mnuWindowNewWindow", "window-new" },
    { "mnuHelphelp", "help-contents" },
    { "mnuHelpAbout", "help-about" },
    { "mnuPopCut", "edit-cut" },
    { "mnuPopCopy", "edit-copy" },
    { "mnuPopPaste", "edit-paste" },
    { "mnuPopFont", "preferences-desktop-font" },
    { "mnuPopSpeak", "media-playback-start" },
    { "mnuPopPause", "media-playback-pause" },
    { "mnuPopStop", "media-playback-stop" },
    { "mnuTrayShowSoftware", "tessavox-show-window" },
    { "mnuTrayReadClipboard", "tessavox-read-clipboard" },
    { "mnuTrayStop", "media-playback-stop" },
    { "mnuTrayPause", "media-playback-pause" },
    { "mnuTrayClipboardtoWav", "tessavox-clipboard-to-file" },
    { "mnuTrayPlayFile", "tessavox-play-file" },
    { "mnuTrayHelp", "help-contents" },
    { "mnuTrayAbout", "help-about" },
    { "mnuTrayExit", "application-exit" },
    { "New", "document-new" },
    { "Open", "document-open" },
    { "Save", "document-save" },
    { "Print", "document-print" },
    { "Cut", "edit-cut" },
    { "Copy", "edit-copy" },
    { "Paste", "edit-paste" },
    { "Back", "go-previous" },
    { "Forward", "go-next" },
    { "Stop", "process-stop" },
    { "Refresh", "view-refresh" },
    { "Search", "edit-find" },
};

constexpr IconRow big_buttons[] = {
    { "SpeakBtn", "media-playback-start" },
    { "StopBtn", "media-playback-stop" },
    { "PauseBtn", "media-playback-pause" },
    { "ResumeBtn", "tessavox-resume" },
};

constexpr IconRow dock_buttons[] = {
    { "ReadClipbdBtn", "tessavox-read-clipboard" },
    { "StopBtn", "media-playback-stop" },
    { "PauseBtn", "tessavox-pause-or-resume" },
    { "SpeaktofileBtn", "tessavox-speak-to-file" },
    { "Play", "tessavox-play-file" },
    { "Command4", "tessavox-show-window" },
};

QString icon_in(std::span<const IconRow> rows, std::string_view control)
{
    for (const IconRow& row : rows) {
        if (control == row.control)
            return row.icon;
    }
    return {};
}

/// Back is where reading comes from.
QString facing(const QString& icon)
{
    constexpr const char* pair[] = { "go-previous", "go-next" };
    if (QGuiApplication::isLeftToRight())
        return icon;
    return icon == pair[0] ? pair[1] : icon == pair[1] ? pair[0] : icon;
}

/// What gives a drawing its colours: the program's palette of the moment, or that of a button.
struct Ink {
    QPalette::ColorRole pointed_at = QPalette::ButtonText;
    std::optional<QPalette> of_button = {};
};

QString file_of(const QString& icon)
{
    return QString("%1:%2.svg").arg(search_path, icon);
}

enum class Source { desktop_theme, our_own };

/// A sign in the colour of the text beside it. It is looked for when it is first shown: most menus
/// never are, and themes are many folders. Themes draw a command in many ways, of which only the
/// symbolic one is made to take a colour; where there is none, our own drawing stands.
class InkIconEngine : public QIconEngine {
public:
    InkIconEngine(QString icon, const Ink& ink, Source source)
        : m_icon(std::move(icon))
        , m_ink(ink)
        , m_source(source)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal scale = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * scale, mode, state, scale));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        look_up();
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        if (m_drawing)
            m_drawing->render(&painter);
        else
            m_themed.paint(&painter, picture.rect());
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(picture.rect(), colour(mode));
        return picture;
    }

    QIconEngine* clone() const override
    {
        return std::make_unique<InkIconEngine>(*this).release(); // the caller owns it
    }

private:
    void look_up()
    {
        if (m_drawing || !m_themed.isNull())
            return;
        const QString symbolic = m_icon + "-symbolic";
        if (m_source == Source::desktop_theme && QIcon::themeName() != programs_own_theme)
            m_themed = QIcon::fromTheme(symbolic);
        if (m_themed.name() == symbolic)
            return; // and no other that stands in for it
        m_themed = {};
        m_drawing = std::make_shared<QSvgRenderer>(file_of(m_icon));
    }

    QColor colour(QIcon::Mode mode) const
    {
        const QPalette palette = m_ink.of_button.value_or(QApplication::palette());
        return mode == QIcon::Disabled ? palette.color(QPalette::Disabled, QPalette::ButtonText)
            : mode == QIcon::Active    ? palette.color(QPalette::Active, m_ink.pointed_at)
                                       : palette.color(QPalette::Active, QPalette::ButtonText);
    }

    QString m_icon;
    Ink m_ink;
    Source m_source;
    QIcon m_themed;
    std::shared_ptr<QSvgRenderer> m_drawing; // null where a themed one is taken
};

/// Null where we have no drawing.
QIcon drawn(const QString& icon, const Ink& ink, Source source)
{
    if (icon.isEmpty() || !QFile::exists(file_of(icon)))
        return {};
    return QIcon(std::make_unique<InkIconEngine>(icon, ink, source).release());
}

} // namespace

void use_icons_of(const std::string& folder)
{
    QDir::setSearchPaths(search_path, { to_qt(folder) });
}

QIcon icon_of_command(std::string_view name, IconPlace place)
{
    const auto pointed_at
        = place == IconPlace::menu ? QPalette::HighlightedText : QPalette::ButtonText;
    return drawn(facing(icon_in(commands, name)), { pointed_at }, Source::desktop_theme);
}

QIcon icon_of_big_button(std::string_view name, const QPalette& palette)
{
    return drawn(icon_in(big_buttons, name), { QPalette::ButtonText, palette }, Source::our_own);
}

QIcon icon_of_dock_button(std::string_view name, const QPalette& palette)
{
    return drawn(icon_in(dock_buttons, name), { QPalette::ButtonText, palette }, Source::our_own);
}

} // namespace tessavox
