#include "platform/qt/screen.h"

#include "platform/qt/child_widget.h"

#include <QApplication>

namespace tessavox {
namespace {

/// Qt deletes an object "later" in the loop that its handler came from, not in one that runs inside
/// of the handler.
class Hourglass : public QObject {
public:
    Hourglass()
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        deleteLater();
    }
    ~Hourglass() override { QApplication::restoreOverrideCursor(); }
};

} // namespace

QtScreen::~QtScreen()
{
    delete m_hourglass;
}

void QtScreen::set_MousePointer(MousePointer pointer)
{
    if (pointer == MousePointer::normal)
        delete m_hourglass;
    else if (!m_hourglass)
        m_hourglass = &make_child<Hourglass>(); // deletes itself
}

} // namespace tessavox
