// The library tessavox-printing.so: the desktop's default printer, by way of PDF.
#include "platform/failure.h"
#include "platform/qt/late_printer.h"
#include "platform/qt/print_page.h"
#include "platform/qt/printing/print_server.h"
#include "platform/qt/text_conversion.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>

namespace tessavox {
namespace {

constexpr int dots_per_inch = 600;
constexpr double twips_of_a_point = 20;

class DefaultPrinterJob : public QtPrintJob {
public:
    explicit DefaultPrinterJob(const std::string& title)
        : m_title(to_qt(title))
        , m_paper(default_paper())
        , m_pages(&m_document)
    {
        m_paper.setUnits(QPageLayout::Point);
        m_pages.setResolution(dots_per_inch);
        m_pages.setTitle(m_title);
        m_pages.setPageLayout(
            { m_paper.pageSize(), m_paper.orientation(), {}, QPageLayout::Point });
        if (!m_document.open(QIODevice::WriteOnly) || !m_painter.begin(&m_pages))
            throw Failure("no page can be begun");
    }
    double left_offset() const override
    {
        return m_paper.minimumMargins().left() * twips_of_a_point;
    }
    double top_offset() const override { return m_paper.minimumMargins().top() * twips_of_a_point; }
    double Width() const override { return paper().width() * twips_of_a_point; }
    double Height() const override { return paper().height() * twips_of_a_point; }
    void NewPage() override
    {
        if (!m_pages.newPage())
            throw Failure("there is no further page");
    }
    void EndDoc() override
    {
        m_painter.end();
        print_document(m_document.data(), m_title);
    }
    QPainter& painter() override { return m_painter; }

private:
    QRectF paper() const { return m_paper.fullRect(QPageLayout::Point); }

    QString m_title;
    QPageLayout m_paper;
    QBuffer m_document;
    QPdfWriter m_pages;
    QPainter m_painter;
};

class DefaultPrinter : public Printer {
public:
    std::unique_ptr<PrintJob> begin(const std::string& title) override
    {
        return std::make_unique<DefaultPrinterJob>(title);
    }
};

} // namespace
} // namespace tessavox

extern "C" Q_DECL_EXPORT tessavox::Printer* tessavox_make_printer()
{
    return std::make_unique<tessavox::DefaultPrinter>().release(); // the caller owns it
}
