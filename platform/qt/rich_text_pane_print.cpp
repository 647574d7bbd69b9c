// The text of the pane on paper.
#include "platform/failure.h"
#include "platform/qt/page_text.h"
#include "platform/qt/print_page.h"
#include "platform/qt/rich_text_pane.h"

#include <QPainter>
#include <QTextDocument>

namespace tessavox {

std::int32_t QtRichTextPane::FormatRange(PrintJob& job, const PageArea& area, std::int32_t first)
{
    constexpr double twips_of_an_inch = 1440;
    auto* const ours = dynamic_cast<QtPrintJob*>(&job);
    if (!ours)
        throw Failure("nothing can be painted on this job");
    QPainter& painter = ours->painter();
    QPaintDevice& device = *painter.device();
    const double across = device.logicalDpiX() / twips_of_an_inch;
    const double down = device.logicalDpiY() / twips_of_an_inch;
    if (first == 0)
        m_pages = std::make_unique<PageText>(document(), device,
            QSizeF((area.right - area.left) * across, (area.bottom - area.top) * down));
    if (!m_pages)
        throw Failure("the first page comes first");
    painter.save();
    painter.translate(
        (area.left + job.left_offset()) * across, (area.top + job.top_offset()) * down);
    const std::int32_t next = m_pages->draw(painter, first);
    painter.restore();
    return next;
}

void QtRichTextPane::release_format()
{
    m_pages.reset();
}

} // namespace tessavox
