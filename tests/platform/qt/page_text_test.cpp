#include "platform/qt/page_text.h"

#include "platform/failure.h"

#include <QImage>
#include <QPainter>
#include <QTextDocument>

#include <gtest/gtest.h>

namespace tessavox {
namespace {

/// Where the pages of a text begin, and its length at the end.
std::vector<int> pages_of(const QString& text, int pixels_of_a_page)
{
    QTextDocument document(text);
    QImage paper(400, 400, QImage::Format_RGB32);
    QPainter painter(&paper);
    const PageText pages(document, paper, QSizeF(400, pixels_of_a_page));
    std::vector<int> starts{ 0 };
    while (starts.size() == 1 || starts.back() < text.size())
        starts.push_back(pages.draw(painter, starts.back()));
    EXPECT_EQ(starts.back(), text.size());
    return starts;
}

TEST(Pages, EndWithTheLastLineThatFits)
{
    const int lines_of_a_page = pages_of(QString("a\n").repeated(40), 300)[1] / 2;
    ASSERT_GT(lines_of_a_page, 5);
    for (int lines = 1; lines < 40; ++lines) {
        const QString text = QString("a\n").repeated(lines - 1) + "a";
        const int pages = (lines + lines_of_a_page - 1) / lines_of_a_page;
        EXPECT_EQ(pages_of(text, 300).size(), static_cast<std::size_t>(pages) + 1) << lines;
    }
    // A line end that alone would stand on a further page makes none.
    EXPECT_EQ(pages_of(QString("a\n").repeated(lines_of_a_page), 300).size(), 2u);
}

TEST(Pages, CutAParagraphBetweenItsLinesAndTakeLinesHigherThanAPage)
{
    const QString paragraph = QString("several words of a paragraph ").repeated(200);
    const std::vector<int> starts = pages_of(paragraph, 300);
    EXPECT_GT(starts.size(), 3u);
    for (std::size_t i = 1; i + 1 < starts.size(); ++i)
        EXPECT_EQ(paragraph[starts[i] - 1], ' ');
    EXPECT_EQ(pages_of("a\nb\nc", 5).size(), 4u);
    EXPECT_EQ(pages_of("", 300).size(), 2u);
    EXPECT_THROW(pages_of("a", 0), Failure);
}

} // namespace
} // namespace tessavox
