#include "platform/qt/clipboard_fetch.h"

#include "platform/qt/wayland_clipboard.h"
#include "platform/qt/x11_clipboard.h"

namespace tessavox {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// Where a Wayland session lets its clipboard be reached without the focus, it does not pass on to
// X11 what is copied while no X11 window is in front.
std::unique_ptr<ClipboardFetch> ClipboardFetch::of_this_session()
{
    if (auto wayland = WaylandClipboard::connected())
        return wayland;
    return X11Clipboard::connected();
}

void ClipboardFetch::start()
{
    stop();
    m_start = Clock::now();
    m_state = State::asked;
    m_forms.emplace();
    ask_for_forms();
}

void ClipboardFetch::stop()
{
    if (m_state == State::asked)
        drop_question();
    m_state = State::idle;
    m_forms.reset();
}

milliseconds ClipboardFetch::since_start() const
{
    return std::chrono::duration_cast<milliseconds>(Clock::now() - m_start);
}

void ClipboardFetch::advance()
{
    const bool was_done = is_done();
    handle_events();
    if (is_done() && !was_done && m_done)
        m_done();
}

void ClipboardFetch::wait(milliseconds patience)
{
    const auto until = Clock::now() + patience;
    for (advance(); m_state == State::asked; advance()) {
        const auto left = std::chrono::duration_cast<milliseconds>(until - Clock::now());
        if (left.count() <= 0)
            return;
        std::vector<pollfd> descriptors = awaited();
        ::poll(descriptors.data(), descriptors.size(), static_cast<int>(left.count()));
    }
}

TextSlice ClipboardFetch::take_text()
{
    TextSlice text = m_forms ? m_forms->take_text() : TextSlice();
    m_forms.reset();
    return text;
}

void ClipboardFetch::changed() const
{
    if (m_changed)
        m_changed();
}

void ClipboardFetch::offered(const std::function<bool(const TextForm&)>& is_offered)
{
    m_forms->choose(is_offered);
    ask_for_next();
}

void ClipboardFetch::received(const QByteArray& piece)
{
    if (!m_forms->add(piece)) {
        stop();
        end();
    } else if (piece.isEmpty()) {
        m_forms->complete();
        ask_for_next();
    }
}

void ClipboardFetch::ask_for_next()
{
    if (const TextForm* const form = m_forms->next())
        ask_for(*form);
    else
        end();
}

void ClipboardFetch::end()
{
    m_state = State::done;
}

} // namespace tessavox
