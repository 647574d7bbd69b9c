// The desktop's default printer.
#pragma once

#include <memory>
#include <string>

namespace tessavox {

/// A part of a page: twips from the corner of what the printer can print on.
struct PageArea {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// Goes to the printer with EndDoc(); of one that is dropped before, some pages may be printed.
class PrintJob {
public:
    virtual ~PrintJob() = default;
    /// How far what can be printed on lies inside the edges of the paper; twips.
    virtual double left_offset() const = 0;
    virtual double top_offset() const = 0;
    /// The whole paper; twips.
    virtual double Width() const = 0;
    virtual double Height() const = 0;
    /// What follows is printed on a further page. @throws Failure if the printer takes no more.
    virtual void NewPage() = 0;
    /// @throws Failure if the printer doesn't take it.
    virtual void EndDoc() = 0;
};

class Printer {
public:
    virtual ~Printer() = default;
    /// A job for the default printer, with its first page empty yet. `title` is what the desktop
    /// calls it. @throws Failure if there is no printer or it takes no job.
    virtual std::unique_ptr<PrintJob> begin(const std::string& title) = 0;
};

} // namespace tessavox
