#include "platform/qt/screen.h"

#include <QApplication>

namespace tessavox {

QtScreen::~QtScreen()
{
    set_MousePointer(MousePointer::normal);
}

void QtScreen::set_MousePointer(MousePointer pointer)
{
    const bool busy = pointer == MousePointer::hourglass;
    if (busy == m_is_busy)
        return;
    m_is_busy = busy;
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

} // namespace tessavox
