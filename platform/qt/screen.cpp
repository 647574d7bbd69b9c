#include "platform/qt/screen.h"

#include "platform/qt/child_widget.h"

#include "platform/qt/twips.h"

#include <QApplication>
#include <QCursor>
#include <QScreen>

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

double QtScreen::Width() const
{
    return to_twips(QGuiApplication::primaryScreen()->size().width());
}

double QtScreen::Height() const
{
    return to_twips(QGuiApplication::primaryScreen()->size().height());
}

double QtScreen::TwipsPerPixelX() const
{
    return twips_per_pixel;
}

double QtScreen::TwipsPerPixelY() const
{
    return twips_per_pixel;
}

PixelEdges QtScreen::work_area() const
{
    const QScreen* const here = QGuiApplication::screenAt(QCursor::pos());
    const QRect area = (here ? here : QGuiApplication::primaryScreen())->availableGeometry();
    return { area.left(), area.top(), area.left() + area.width(), area.top() + area.height() };
}

} // namespace tessavox
