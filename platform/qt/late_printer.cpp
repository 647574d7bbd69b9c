#include "platform/qt/late_printer.h"

#include "platform/qt/late_library.h"

namespace tessavox {

std::unique_ptr<PrintJob> LatePrinter::begin(const std::string& title)
{
    if (!m_printer)
        m_printer.reset(
            reinterpret_cast<MakePrinter*>(late_function(m_library, make_printer_name))());
    return m_printer->begin(title);
}

} // namespace tessavox
