#include "platform/failure.h"
#include "platform/files/disk_file_store.h"
#include "platform/qt/colours.h"
#include "platform/qt/program_style.h"
#include "platform/qt/skin.h"
#include "tests/platform/qt/demo_form.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QStyleOptionTitleBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

const QString share = TESSAVOX_SOURCE_SHARE;

struct Desktop {
    const char* window;
    const char* button;
    const char* base;
    const char* text;
    const char* selection;
    const char* selected_text;
    bool selection_is_kept;
};

constexpr Desktop desktops[] = {
    { "#efefef", "#efefef", "#ffffff", "#000000", "#308cc6", "#ffffff", false },
    { "#eff0f1", "#fcfcfc", "#ffffff", "#232629", "#3daee9", "#ffffff", false },
    { "#202326", "#31363b", "#1b1e20", "#fcfcfc", "#3daee9", "#ffffff", true },
    { "#f6f5f4", "#f6f5f4", "#ffffff", "#2e3436", "#3584e4", "#ffffff", false },
    { "#2e3436", "#39393f", "#1e1e1e", "#eeeeec", "#15539e", "#ffffff", false },
    { "#000000", "#000000", "#000000", "#ffffff", "#ffff00", "#000000", true },
    { "#ffffff", "#ffffff", "#ffffff", "#000000", "#000000", "#ffffff", true },
};

/// The largest contrast between the ground of a document's title bar, which stands at its left
/// edge, and a part of it.
double contrast_in_title_bar(
    const QPalette& palette, Qt::WindowState state, QStyle::SubControl part)
{
    const ProgramStyle style;
    QStyleOptionTitleBar bar;
    bar.rect = { 0, 0, 300, 24 };
    bar.palette = palette;
    bar.text = "MMM";
    bar.titleBarState = state;
    bar.titleBarFlags = Qt::SubWindow | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint;
    QImage picture(bar.rect.size(), QImage::Format_RGB32);
    QPainter painter(&picture);
    style.drawComplexControl(QStyle::CC_TitleBar, &bar, &painter, nullptr);
    painter.end();
    const QRect place = style.subControlRect(QStyle::CC_TitleBar, &bar, part, nullptr);
    double largest = 1;
    for (int x = place.left() + 3; x < place.right() - 2; ++x)
        for (int y = place.top() + 3; y < place.bottom() - 2; ++y)
            largest
                = std::max(largest, contrast(picture.pixelColor(x, y), picture.pixelColor(1, 12)));
    return largest;
}

TEST(ProgramStyles, MakeEveryDesktopsSelectionAndLinesVisible)
{
    EXPECT_NEAR(contrast("#767676", "#ffffff"), 4.54, 0.005); // as the guidelines' examples have it
    EXPECT_NEAR(contrast("#0000ff", "#ffff00"), 8.00, 0.005);
    ProgramStyle style;
    for (const Desktop& desktop : desktops) {
        const QColor window(desktop.window), button(desktop.button), selection(desktop.selection);
        QPalette palette(QColor(desktop.text), button, window, window, window, QColor(desktop.text),
            QColor(desktop.text), QColor(desktop.base), window);
        palette.setColor(QPalette::Highlight, selection);
        palette.setColor(QPalette::HighlightedText, QColor(desktop.selected_text));
        style.polish(palette);
        const auto colour = [&](QPalette::ColorRole role) { return palette.color(role); };
        EXPECT_GE(contrast(colour(QPalette::Highlight), colour(QPalette::HighlightedText)), 4.5)
            << desktop.selection;
        for (const auto ground : { QPalette::Window, QPalette::Base, QPalette::Button }) {
            EXPECT_GE(contrast(colour(QPalette::Mid), colour(ground)), 3) << desktop.window;
            EXPECT_GE(contrast(colour(QPalette::Highlight), colour(ground)), 2.9) << desktop.window;
        }
        for (const auto ground : { QPalette::Midlight, QPalette::Dark })
            EXPECT_GE(contrast(colour(QPalette::ButtonText), colour(ground)), 4.5)
                << desktop.window;
        for (const auto state : { Qt::WindowNoState, Qt::WindowActive }) {
            for (const auto part : { QStyle::SC_TitleBarLabel, QStyle::SC_TitleBarCloseButton })
                EXPECT_GE(contrast_in_title_bar(palette, state, part), 4) << desktop.window << part;
        }
        EXPECT_EQ(colour(QPalette::Highlight) == selection, desktop.selection_is_kept)
            << desktop.selection;
    }
}

QStringList& complaints()
{
    static QStringList all;
    return all;
}

struct Skins : testing::Test {
    Skins()
    {
        child->Load();
        desktop.settle();
        complaints().clear();
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            complaints().append(text);
        });
    }
    ~Skins() override { qInstallMessageHandler(nullptr); }
    QImage picture() const
    {
        if (QWidget* focused = QApplication::focusWidget())
            focused->clearFocus();
        return desktop.find<QWidget>("StopBtn").grab().toImage();
    }
    /// What a button looks like under the skin.
    QImage under(const QString& path)
    {
        DiskFileStore files;
        QtSkin skin(files);
        attempt([&] { skin.LoadSkin(path.toStdString()); });
        skin.ApplySkin(*desktop.main);
        desktop.settle();
        return picture();
    }

    DemoDesktop desktop;
    std::shared_ptr<DemoChild> child = std::make_shared<DemoChild>(desktop.forms);
    QTemporaryDir folder;
};

TEST_F(Skins, OfTheProgramIsUnderstoodAndTakesItsColoursFromTheDesktop)
{
    const QImage plain = under("");
    EXPECT_NE(under(share + "/winaqua2.skn"), plain);
    EXPECT_EQ(complaints().join('\n'), "");
    QFile file(share + "/winaqua2.skn");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(QString(file.readAll()).contains(QRegularExpression(": *#|rgb|hsl")));
    // A desktop that turns dark is followed at once.
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(QColor("#202326")));
    desktop.settle();
    const QColor button = picture().pixelColor(20, 10);
    EXPECT_TRUE(is_dark(button)) << button.name().toStdString();
    QApplication::setPalette(before);
}

TEST_F(Skins, ThatAreBrokenLeaveThePlainLook)
{
    const QImage plain = under("");
    const auto file_of = [&](const char* name, const QByteArray& bytes) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    };
    QDir(folder.path()).mkdir("folder");
    const QString broken[] = { folder.filePath("missing"), folder.filePath("folder"), "/dev/zero",
        file_of("empty", ""), file_of("garbage", "QPushButton { border: 1px {{{ solid; }"),
        file_of("binary",
            QByteArray("\x7f"
                       "ELF\0\xff\xfe{}\x80;",
                12)
                .repeated(1000)),
        file_of("open", "QPushButton { background: url("),
        file_of("huge", QByteArray("QPushButton { color: red; }\n").repeated(50'000)) };
    for (const QString& path : broken)
        EXPECT_EQ(under(path), plain) << path.toStdString();
}

} // namespace
} // namespace tessavox
