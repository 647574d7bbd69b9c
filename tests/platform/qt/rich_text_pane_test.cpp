#include "platform/qt/rich_text_pane.h"

#include "platform/files/disk_file_store.h"
#include "platform/qt/colours.h"
#include "tests/contract/rich_text_pane_contract.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QVBoxLayout>

namespace tessavox {
namespace {

QTextEdit& editor_of(QtRichTextPane& pane)
{
    return dynamic_cast<QTextEdit&>(pane.widget());
}

class QtPaneBed {
public:
    QtPaneBed()
    {
        m_pane.widget().resize(600, 400);
        m_pane.widget().show();
    }
    RichTextPane& pane() { return m_pane; }
    void user_types(const std::u16string& text)
    {
        for (const char16_t unit : text) {
            if (unit == u'\n')
                QTest::keyClick(&m_pane.widget(), Qt::Key_Return);
            else
                QTest::keyClick(&m_pane.widget(), static_cast<char>(unit));
        }
    }
    void user_selects(std::int32_t start, std::int32_t length)
    {
        QTextEdit& editor = editor_of(m_pane);
        QTextCursor cursor = editor.textCursor();
        cursor.setPosition(start);
        cursor.setPosition(start + length, QTextCursor::KeepAnchor);
        editor.setTextCursor(cursor);
    }

    FileStore& files() { return m_files; }
    std::string path(const std::string& name)
    {
        return m_folder.filePath(name.c_str()).toStdString();
    }

private:
    QTemporaryDir m_folder;
    DiskFileStore m_files;
    QtRichTextPane m_pane{ nullptr, &m_files };
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, RichTextPaneContract, QtPaneBed);

std::u16string book(int paragraphs)
{
    std::u16string text;
    for (int i = 0; i < paragraphs; ++i)
        text += u"Of a paragraph that is long enough to be broken into several lines on the "
                u"screen, there are many in this book, and every one of them is like this one.\n";
    return text;
}

class ShownPane : public testing::Test {
protected:
    ShownPane()
    {
        window.resize(640, 480);
        layout.addWidget(&before);
        layout.addWidget(&pane.widget());
        layout.addWidget(&after);
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }
    ~ShownPane() override { pane.widget().setParent(nullptr); }

    QWidget window;
    QVBoxLayout layout{ &window };
    QLineEdit before, after;
    QtRichTextPane pane;
    QTextEdit& editor = editor_of(pane);
};

/// The line by walking through everything, as the pane may not.
int line_by_counting(const QTextDocument& document, int offset)
{
    int line = 0;
    const QTextBlock wanted = document.findBlock(offset);
    document.documentLayout();
    for (QTextBlock block = document.begin(); block != wanted; block = block.next())
        line += block.layout()->lineCount();
    return line + wanted.layout()->lineForTextPosition(offset - wanted.position()).lineNumber();
}

TEST_F(ShownPane, LinesOnTheScreenAreRightAfterReadingEditingAndANewWidth)
{
    pane.set_Text(book(60));
    const int size = static_cast<int>(pane.Text().size());
    const auto check = [&](const char* when) {
        for (int offset = 0; offset <= size - 200; offset += 97) {
            const int line = pane.GetLineFromChar(offset);
            ASSERT_EQ(line, line_by_counting(*editor.document(), offset)) << when << offset;
        }
    };
    check("first ");
    EXPECT_GT(pane.GetLineFromChar(size - 200), 100);
    pane.set_SelStart(400);
    QTest::keyClick(&editor, Qt::Key_Return);
    check("after a new paragraph ");
    pane.set_RightMargin(3000);
    check("at the right margin ");
    pane.set_RightMargin(0);
    window.resize(900, 480);
    QApplication::processEvents();
    check("in a wider window ");
    pane.set_FontSize(20);
    check("in large type ");
}

TEST_F(ShownPane, ASelectedWordIsBroughtIntoView)
{
    pane.set_Text(book(300));
    pane.set_SelStart(static_cast<std::int32_t>(pane.Text().size()) - 500);
    pane.set_SelLength(10);
    EXPECT_TRUE(editor.viewport()->rect().intersects(editor.cursorRect()));
    EXPECT_GT(editor.verticalScrollBar()->value(), 0);
}

TEST_F(ShownPane, SelectingAWholeBookLeavesTheViewAtItsStartAndShowsOnceTheUserActs)
{
    pane.set_Text(book(3'000));
    pane.set_SelLength(static_cast<std::int32_t>(pane.Text().size()));
    EXPECT_EQ(pane.SelLength(), static_cast<std::int32_t>(pane.Text().size()));
    EXPECT_EQ(pane.SelText(), pane.Text());
    EXPECT_EQ(editor.verticalScrollBar()->value(), 0);
    EXPECT_EQ(editor.document()->lastBlock().layout()->lineCount(), 0) << "laid out for nothing";

    int selections = 0;
    pane.SelChange = [&] { ++selections; };
    QTest::keyClick(&editor, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().size(), pane.SelLength());
    EXPECT_EQ(editor.textCursor().selectedText().size(), pane.SelLength());
    EXPECT_EQ(selections, 0); // it has been selected all the time
    QTest::keyClick(&editor, 'x');
    EXPECT_EQ(pane.Text().view(), u"x");
}

TEST_F(ShownPane, AnEndlessWordIsBrokenAnywhereAndOtherTextBetweenWords)
{
    const auto lines = [&] {
        pane.GetLineFromChar(0);
        return editor.document()->begin().layout()->lineCount();
    };
    pane.set_Text(std::u16string(60'000, u'x')); // otherwise this takes a second
    EXPECT_EQ(editor.wordWrapMode(), QTextOption::WrapAnywhere);
    EXPECT_GT(lines(), 100);
    QObject::connect(editor.document()->documentLayout(), &QAbstractTextDocumentLayout::update,
        &editor, [] { FAIL() << "it is laid out once more before it goes"; });
    pane.set_Text(u"words");
    EXPECT_EQ(editor.wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
    {
        const OneStep step(pane);
        for (int i = 0; i < 1000; ++i)
            pane.set_SelText(std::u16string(30, u'x'));
    }
    EXPECT_EQ(editor.wordWrapMode(), QTextOption::WrapAnywhere);
    editor.undo(); // all of it is one step
    EXPECT_EQ(pane.Text().view(), u"words");
    pane.set_Text(u"words");
    pane.set_SelText(std::u16string(60'000, u'x'));
    EXPECT_EQ(editor.wordWrapMode(), QTextOption::WrapAnywhere);
}

TEST_F(ShownPane, PastedTextComesWithoutFormatsAndIsUndoneByItself)
{
    using Formats = std::vector<std::pair<const char*, QByteArray>>;
    const struct {
        Formats offered;
        std::u16string text;
    } rows[] = {
        { { { "text/html", "<b>bold</b> <img src='data:'>" },
              { "text/plain", "bold\r\n\xef\xbf\xbc" } },
            u"bold\n\ufffd" },
        { { { "text/html", "<p>A &amp; <b>b</b><img src='data:'></p><p>c</p>" } }, u"A & b\nc" },
        { { { "text/uri-list", "file:///a%20b/%C3%A4.txt\r\nfile:///c\r\n" },
              { "text/plain", "file:///a%20b/%C3%A4.txt" } },
            u"/a b/\u00e4.txt\n/c" },
        { { { "text/uri-list", "http://a.example/b" }, { "text/plain", "a link" } }, u"a link" },
        { { { "text/uri-list", "http://a.example/b" } }, u"http://a.example/b" },
        { { { "image/png", "\x89PNG" } }, u"" },
    };
    for (const auto& row : rows) {
        auto* offered = std::make_unique<QMimeData>().release(); // the clipboard owns it
        for (const auto& [format, bytes] : row.offered)
            offered->setData(format, bytes);
        QApplication::clipboard()->setMimeData(offered);
        pane.set_Text(u"");
        QTest::keyClicks(&editor, "ab");
        editor.paste();
        EXPECT_EQ(pane.Text().view(), u"ab" + row.text);
        const QTextBlock first = editor.document()->begin();
        EXPECT_EQ(first.begin().fragment().charFormat().fontWeight(), QFont().weight());
        if (row.text.empty())
            continue;
        QTest::keyClicks(&editor, "cd");
        editor.undo();
        EXPECT_EQ(pane.Text().view(), u"ab" + row.text);
        editor.undo();
        EXPECT_EQ(pane.Text().view(), u"ab");
        editor.undo();
        EXPECT_TRUE(pane.Text().empty());
    }
}

TEST_F(ShownPane, TheKeyboardGetsInAndOutButTabStaysInTheText)
{
    const std::tuple<Qt::Key, Qt::KeyboardModifiers, QWidget*> rows[] = {
        { Qt::Key_F6, {}, &after },
        { Qt::Key_F6, Qt::ShiftModifier, &before },
        { Qt::Key_Backtab, Qt::ShiftModifier, &before },
        { Qt::Key_Tab, {}, &editor },
    };
    for (const auto& [key, modifiers, lands] : rows) {
        editor.setFocus();
        QTest::keyClick(&editor, key, modifiers);
        EXPECT_EQ(window.focusWidget(), lands);
    }
    EXPECT_EQ(pane.Text().view(), u"\t");
}

TEST_F(ShownPane, ColoursForPaperAreShownLegiblyOnADarkGroundAndKept)
{
    const auto shown = [&] { return editor.document()->begin().layout()->formats(); };
    const auto expect_legible = [&](int start, int length) {
        ASSERT_EQ(shown().size(), 1);
        EXPECT_EQ(shown()[0].start, start);
        EXPECT_EQ(shown()[0].length, length);
        const QColor ink = shown()[0].format.foreground().color();
        EXPECT_GE(contrast(ink, editor.palette().color(QPalette::Base)), contrast_of_text);
        EXPECT_GT(ink.red(), ink.blue()); // a shade of what it is
        EXPECT_EQ(pane.SelColor(), RGB(149, 32, 19));
    };
    const QPalette light = QApplication::palette();
    const auto turn = [](const QPalette& palette) {
        QApplication::setPalette(palette);
        QApplication::processEvents();
    };
    const QPalette dark(QColor("#202326"));
    turn(dark);
    pane.set_Text(u"a tag here");
    pane.set_SelStart(2);
    pane.set_SelLength(3);
    pane.set_SelColor(RGB(149, 32, 19));
    expect_legible(2, 3);
    pane.set_SelStart(6);
    pane.set_SelLength(4);
    pane.set_SelColor(automatic_color);
    EXPECT_EQ(shown().size(), 1); // that has the desktop's own colour
    pane.set_SelStart(2);
    pane.set_SelLength(3);
    turn(light);
    EXPECT_TRUE(shown().isEmpty());
    turn(dark);
    expect_legible(2, 3);
    pane.set_Text(u"");
    pane.set_SelColor(RGB(149, 32, 19));
    pane.set_Text(u"tag" + book(100));
    expect_legible(0, editor.document()->begin().length() - 1);
    QSignalSpy edits(editor.document(), &QTextDocument::contentsChange);
    pane.set_SelText(u"x");
    EXPECT_LT(edits[0][2].toInt(), 1000); // and not what was coloured before
    QSignalSpy layouts(editor.document()->documentLayout(), &QAbstractTextDocumentLayout::update);
    turn(light);
    EXPECT_LT(layouts.count(), 50); // not once for each paragraph
    pane.set_SelText(u"x");
    EXPECT_LT(edits.last()[2].toInt(), 1000);
}

TEST_F(ShownPane, ASelectedWordThatIsPartlyDrawnAnewHasNoSpotsOnAScaledDisplay)
{
    pane.set_Text(u"brown brown");
    pane.set_SelLength(11);
    QImage display(QSize(200, 40), QImage::Format_RGB32);
    display.setDevicePixelRatio(1.25);
    const auto darkest = [&] {
        int darkest = 255;
        for (int x = 8; x < 100; ++x)
            for (int y = 10; y < 20; ++y)
                darkest = std::min(darkest, qGray(display.pixel(x, y)));
        return darkest;
    };
    editor.viewport()->render(&display);
    const int before = darkest();
    for (int x = 4; x < 80; ++x) {
        editor.viewport()->render(&display, { x, 4 }, QRect(x, 4, 6, 14));
        EXPECT_GE(darkest(), before) << x;
    }
}

TEST_F(ShownPane, AMouseButtonIsReportedWhenItIsReleased)
{
    std::vector<std::pair<int, int>> released;
    pane.MouseUp = [&](int button, int shift) { released.emplace_back(button, shift); };
    QTest::mousePress(editor.viewport(), Qt::LeftButton);
    EXPECT_TRUE(released.empty());
    QTest::mouseRelease(editor.viewport(), Qt::LeftButton, Qt::ControlModifier);
    QTest::mouseClick(editor.viewport(), Qt::RightButton);
    const std::vector<std::pair<int, int>> expected{ { 1, 2 }, { 2, 0 } };
    EXPECT_EQ(released, expected);
}

TEST_F(ShownPane, TheKeysOfAMenuOpenItAtTheCaret)
{
    QMenu menu;
    menu.addAction("Cut");
    pane.MouseUp = [&](int, int) { menu.popup({ 300, 200 }); };
    pane.set_Text(u"One\nTwo");
    pane.set_SelStart(6);
    const QPoint caret = editor.viewport()->mapToGlobal(editor.cursorRect().bottomLeft());
    for (const auto& [key, held] :
        { std::pair(Qt::Key_Menu, Qt::NoModifier), std::pair(Qt::Key_F10, Qt::ShiftModifier) }) {
        QTest::keyClick(&editor, key, held);
        EXPECT_TRUE(menu.isVisible());
        EXPECT_EQ(menu.pos(), caret);
        menu.hide();
    }
}

} // namespace
} // namespace tessavox
