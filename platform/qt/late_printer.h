// The printer, reached by a library that is loaded for the first job.
#pragma once

#include "platform/printer.h"

namespace tessavox {

class LatePrinter : public Printer {
public:
    /// `library` is the path of tessavox-printing.so.
    explicit LatePrinter(std::string library)
        : m_library(std::move(library))
    {
    }
    std::unique_ptr<PrintJob> begin(const std::string& title) override;

private:
    std::string m_library;
    std::unique_ptr<Printer> m_printer;
};

/// What that library offers, by this name.
constexpr const char* make_printer_name = "tessavox_make_printer";
using MakePrinter = Printer*();

} // namespace tessavox
