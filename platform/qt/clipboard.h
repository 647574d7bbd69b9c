// The clipboard, as the desktop offers it.
#pragma once

#include "platform/clipboard.h"
#include "platform/qt/clipboard_fetch.h"

#include <QObject>

#include <memory>

namespace tessavox {

/// Keeps the text until the clipboard changes. Where the desktop is no X11, the toolkit fetches it,
/// and decides how long it waits.
class QtClipboard : public QObject, public Clipboard {
public:
    QtClipboard();
    TextSlice GetText(Patience patience) override;
    bool has_text() override;
    void SetText(std::u16string_view text) override;
    void Clear() override;

private:
    bool is_ours_to_ask() const;
    void fetch(Patience patience);
    void keep(const QString& text);

    std::unique_ptr<ClipboardFetch> m_fetch; // null where it isn't possible
    TextSlice m_text;
    bool m_is_current = false;
};

} // namespace tessavox
