// The signs on the big buttons, drawn in the colour of their text so that they suit every theme.
#pragma once

#include <QIcon>

class QColor;

namespace tessavox {

enum class TransportSign { play, stop, pause, resume };

QIcon transport_icon(TransportSign sign, const QColor& enabled, const QColor& disabled);

} // namespace tessavox
