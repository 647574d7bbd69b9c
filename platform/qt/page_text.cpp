#include "platform/qt/page_text.h"

#include "platform/failure.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace tessavox {

PageText::PageText(const QTextDocument& text, QPaintDevice& device, const QSizeF& page)
    : m_document(text.clone())
{
    if (page.isEmpty())
        throw Failure("a page has no room for text");
    QTextDocument& document = *m_document;
    document.setUndoRedoEnabled(false);
    document.documentLayout()->setPaintDevice(&device);
    document.setDefaultFont(text.defaultFont());
    document.setDocumentMargin(0);
    document.setPageSize(page);
    find_pages();
}

PageText::~PageText() = default;

void PageText::find_pages()
{
    const QAbstractTextDocumentLayout& layout = *m_document->documentLayout();
    static_cast<void>(layout.documentSize()); // lays it all out
    const double height = m_document->pageSize().height();
    m_pages.push_back({ 0, 0 });
    for (QTextBlock block = m_document->begin(); block.isValid(); block = block.next()) {
        const double top = layout.blockBoundingRect(block).top();
        const QTextLayout& lines = *block.layout();
        for (int i = 0; i < lines.lineCount(); ++i) {
            const QTextLine line = lines.lineAt(i);
            // A line on the edge begins its page, whatever its number was rounded to.
            const double middle = top + line.y() + std::min(line.height(), height) / 2;
            const int number = static_cast<int>(std::floor(middle / height));
            if (number > m_pages.back().number)
                m_pages.push_back({ block.position() + line.textStart(), number });
        }
    }
}

std::int32_t PageText::draw(QPainter& painter, std::int32_t first) const
{
    const auto page = std::find_if(
        m_pages.begin(), m_pages.end(), [&](const Page& one) { return one.first == first; });
    if (page == m_pages.end())
        throw Failure("no page begins at " + std::to_string(first));
    const QSizeF size = m_document->pageSize();
    const std::int32_t end
        = page + 1 == m_pages.end() ? m_document->characterCount() - 1 : (page + 1)->first;
    QRectF part(0, page->number * size.height(), size.width(), size.height());
    painter.save();
    painter.translate(-part.topLeft());
    painter.setClipRect(part);
    part.setTop(draw_rest_of_paragraph(painter, first, end, part.top()));
    if (part.height() > 0) {
        QAbstractTextDocumentLayout::PaintContext context;
        // A line that only touches the edge stands on the other page.
        context.clip = part.adjusted(0, 1, 0, -1);
        context.palette.setColor(QPalette::Text, Qt::black); // whatever the desktop's colours are
        m_document->documentLayout()->draw(&painter, context);
    }
    painter.restore();
    return end;
}

/// The lines of a paragraph that began on a page before. The layout would draw the last line before
/// them once more, which nobody sees, but who copies from the printed document gets it twice.
/// Returns where they end.
double PageText::draw_rest_of_paragraph(
    QPainter& painter, std::int32_t first, std::int32_t end, double top) const
{
    const QTextBlock block = m_document->findBlock(first);
    if (block.position() == first)
        return top;
    painter.setPen(Qt::black);
    const QTextLayout& lines = *block.layout();
    for (int i = 0; i < lines.lineCount(); ++i) {
        const QTextLine line = lines.lineAt(i);
        const int start = block.position() + line.textStart();
        if (start >= first && start < end)
            line.draw(&painter, lines.position());
    }
    return m_document->documentLayout()->blockBoundingRect(block).bottom();
}

} // namespace tessavox
