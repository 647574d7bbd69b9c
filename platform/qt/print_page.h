// A print job that Qt paints on.
#pragma once

#include "platform/printer.h"

class QPainter;

namespace tessavox {

class QtPrintJob : public PrintJob {
public:
    /// Its origin is the corner of the paper, its unit the device's own.
    virtual QPainter& painter() = 0;
};

} // namespace tessavox
