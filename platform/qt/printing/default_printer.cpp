// The library tessavox-printing.so: the desktop's default printer, by way of Qt.
#include "platform/failure.h"
#include "platform/qt/late_printer.h"
#include "platform/qt/print_page.h"
#include "platform/qt/text_conversion.h"

#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

namespace tessavox {
namespace {

constexpr int dots_per_inch = 600;
constexpr double twips_of_a_point = 20;

class DefaultPrinterJob : public QtPrintJob {
public:
    DefaultPrinterJob(const QPrinterInfo& printer, const std::string& title)
        : m_printer(printer, QPrinter::HighResolution)
    {
        m_printer.setResolution(dots_per_inch);
        m_printer.setDocName(to_qt(title));
        m_printer.setFullPage(true);
        if (!m_painter.begin(&m_printer))
            throw Failure("the printer takes no job");
    }
    double left_offset() const override { return unprintable().left() * twips_of_a_point; }
    double top_offset() const override { return unprintable().top() * twips_of_a_point; }
    double Width() const override { return paper().width() * twips_of_a_point; }
    double Height() const override { return paper().height() * twips_of_a_point; }
    void NewPage() override
    {
        if (!m_printer.newPage())
            throw Failure("the printer takes no further page");
    }
    void EndDoc() override
    {
        if (!m_painter.end() || m_printer.printerState() == QPrinter::Error)
            throw Failure("the printer doesn't take the job");
    }
    QPainter& painter() override { return m_painter; }

private:
    QMarginsF unprintable() const
    {
        QPageLayout layout = m_printer.pageLayout();
        layout.setUnits(QPageLayout::Point);
        return layout.minimumMargins();
    }
    QRectF paper() const { return m_printer.pageLayout().fullRect(QPageLayout::Point); }

    QPrinter m_printer;
    QPainter m_painter;
};

class DefaultPrinter : public Printer {
public:
    std::unique_ptr<PrintJob> begin(const std::string& title) override
    {
        const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
        if (printer.isNull())
            throw Failure("there is no printer");
        return std::make_unique<DefaultPrinterJob>(printer, title);
    }
};

} // namespace
} // namespace tessavox

extern "C" Q_DECL_EXPORT tessavox::Printer* tessavox_make_printer()
{
    return std::make_unique<tessavox::DefaultPrinter>().release(); // the caller owns it
}
