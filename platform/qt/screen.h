// The mouse pointer.
#pragma once

#include "platform/screen.h"

#include <QObject>
#include <QPointer>

namespace tessavox {

/// The hourglass is shown while the handler runs that asked for it, with all that this one waits
/// for, and goes by itself when control is back in the message loop: a failed act leaves none.
class QtScreen : public Screen {
public:
    ~QtScreen() override;
    void set_MousePointer(MousePointer pointer) override;
    double Width() const override;
    double Height() const override;
    double TwipsPerPixelX() const override;
    double TwipsPerPixelY() const override;
    PixelEdges work_area() const override;

private:
    QPointer<QObject> m_hourglass;
};

} // namespace tessavox
