// The clipboard, as the desktop offers it.
#pragma once

#include "platform/clipboard.h"
#include "platform/qt/clipboard_fetch.h"

#include <QObject>

#include <functional>
#include <memory>

namespace tessavox {

/// Keeps the text until the clipboard changes. Where the desktop is no X11, the toolkit fetches it,
/// and decides how long it waits.
class QtClipboard : public QObject, public Clipboard {
public:
    QtClipboard();
    TextSlice GetText(Patience patience) override;
    bool has_text() override;
    void SetText(const TextSlice& text) override;
    void Clear() override;
    /// `notice` runs whenever a read may give another text from now on.
    void when_changed(std::function<void()> notice) { m_notice = std::move(notice); }

private:
    bool is_ours_to_ask() const;
    void fetch(Patience patience);
    void keep(TextSlice text);
    void changed();
    void tell() const;

    std::unique_ptr<ClipboardFetch> m_fetch; // null where it isn't possible
    TextSlice m_text;
    bool m_is_current = false;
    std::function<void()> m_notice;
};

} // namespace tessavox
