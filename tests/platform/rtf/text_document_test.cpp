#include "platform/rtf/reader.h"
#include "platform/rtf/text_document.h"
#include "platform/rtf/writer.h"
#include "platform/text.h"
#include "tests/platform/rtf/described.h"
#include "tests/platform/rtf/files.h"

#include <QFont>
#include <QGuiApplication>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <gtest/gtest.h>

namespace tessavox::rtf {
namespace {

/// The toolkit asks for one before it makes a font.
struct RichTextDocument : testing::Test {
    static void SetUpTestSuite()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = { name, nullptr };
        static const QGuiApplication application(count, arguments);
    }
};

Document read(const std::string& body, LastParagraph last = LastParagraph::open)
{
    return read_rich_text("{\\rtf1{\\fonttbl{\\f0 Arial;}}\\f0 " + body + "}", last);
}

TEST_F(RichTextDocument, KeepsAllThatFilesSay)
{
    for (const RichTextFile& file : rich_text_files()) {
        Document document = read_rich_text(file.bytes);
        const auto toolkit = to_text_document(document);
        toolkit->setDefaultFont(QFont("Some Family", 12));
        // Text without a font of its own has got the one that it is shown with.
        for (CharacterFormat& format : document.character_formats) {
            if (format.font == no_font)
                format.font = static_cast<std::int32_t>(document.fonts.size());
        }
        document.fonts.push_back("Some Family");
        const Document back = from_text_document(*toolkit);
        EXPECT_EQ(described(back), described(document)) << file.name;
        EXPECT_EQ(flaw_of(back), "");
        EXPECT_FALSE(toolkit->isUndoAvailable());
        EXPECT_EQ(back.text, document.text); // the offsets are alike
    }
}

TEST_F(RichTextDocument, TakesAPieceIntoAParagraphOrSeveralParagraphs)
{
    const std::pair<std::string, std::string> rows[] = {
        { R"(\qr x)", "(center)[Arial]a[Arial b]x[Arial]d\n" },
        { R"(\qr x\par\pard y)", "(right)[Arial]a[Arial b]x[Arial]\n(center)[Arial b]y[Arial]d\n" },
        { R"(\qr\par)", "(right)[Arial]a\n(center)d\n" },
        { "", "(center)[Arial]ad\n" },
    };
    for (const auto& [inserted, expected] : rows) {
        const auto toolkit = to_text_document(read("\\qc abcd"));
        toolkit->setUndoRedoEnabled(true);
        const std::string before = described(from_text_document(*toolkit));
        QTextCursor cursor(toolkit.get());
        cursor.setPosition(1);
        cursor.setPosition(3, QTextCursor::KeepAnchor);
        EXPECT_EQ(from_selection(cursor).text, u"bc");
        insert(cursor, read("\\b " + inserted));
        EXPECT_EQ(to_utf8(from_text_document(*toolkit).text).size() - 1,
            static_cast<std::size_t>(cursor.position()));
        EXPECT_EQ(described(from_text_document(*toolkit)), expected) << inserted;
        toolkit->undo();
        EXPECT_EQ(described(from_text_document(*toolkit)), before);
    }
}

} // namespace
} // namespace tessavox::rtf
