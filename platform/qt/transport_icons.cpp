#include "platform/qt/transport_icons.h"

#include <QIconEngine>
#include <QPainter>

namespace tessavox {
namespace {

// All signs fill the middle of a square of this side.
constexpr double side = 24;

void draw(QPainter& painter, TransportSign sign)
{
    switch (sign) {
    case TransportSign::play:
        painter.drawConvexPolygon(QPolygonF({ { 6, 3 }, { 21, 12 }, { 6, 21 } }));
        break;
    case TransportSign::stop:
        painter.drawRoundedRect(QRectF(5, 5, 14, 14), 1.5, 1.5);
        break;
    case TransportSign::pause:
        painter.drawRoundedRect(QRectF(5, 4, 5, 16), 1, 1);
        painter.drawRoundedRect(QRectF(14, 4, 5, 16), 1, 1);
        break;
    case TransportSign::resume:
        painter.drawRoundedRect(QRectF(3, 4, 4, 16), 1, 1);
        painter.drawConvexPolygon(QPolygonF({ { 10, 4 }, { 22, 12 }, { 10, 20 } }));
        break;
    }
}

class TransportIconEngine : public QIconEngine {
public:
    TransportIconEngine(TransportSign sign, const QColor& enabled, const QColor& disabled)
        : m_sign(sign)
        , m_enabled(enabled)
        , m_disabled(disabled)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(mode == QIcon::Disabled ? m_disabled : m_enabled);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / side, rect.height() / side);
        draw(*painter, m_sign);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override
    {
        return std::make_unique<TransportIconEngine>(*this).release(); // the caller owns it
    }

private:
    TransportSign m_sign;
    QColor m_enabled;
    QColor m_disabled;
};

} // namespace

QIcon transport_icon(TransportSign sign, const QColor& enabled, const QColor& disabled)
{
    return QIcon(std::make_unique<TransportIconEngine>(sign, enabled, disabled).release());
}

} // namespace tessavox
