// The clipboard, as the desktop offers it.
#pragma once

#include "platform/clipboard.h"

#include <QObject>

namespace tessavox {

/// The text is fetched when it is first asked for after a change, and then kept. Another program
/// that owns the clipboard but doesn't answer counts as one without text.
class QtClipboard : public QObject, public Clipboard {
public:
    QtClipboard();
    TextSlice GetText() override;
    bool has_text() override;

private:
    TextSlice m_text;
    bool m_is_current = false;
};

} // namespace tessavox
