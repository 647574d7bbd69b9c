#include "platform/qt/clipboard_owner.h"

#include <QGuiApplication>

#ifdef TESSAVOX_HAS_XCB
#include <chrono>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <string_view>
#include <xcb/xcb.h>
#endif

namespace tessavox {

#ifdef TESSAVOX_HAS_XCB
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds patience(250);

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply> using Owned = std::unique_ptr<Reply, Free>;

/// A connection of our own, so that no event of the toolkit's is taken away from it.
class Probe {
public:
    Probe()
        : m_display(xcb_connect(nullptr, nullptr))
    {
    }
    ~Probe() { xcb_disconnect(m_display); }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    bool owner_answers()
    {
        if (xcb_connection_has_error(m_display))
            return true;
        const xcb_atom_t clipboard = atom("CLIPBOARD");
        const auto asked = xcb_get_selection_owner(m_display, clipboard);
        const Owned<xcb_get_selection_owner_reply_t> owner(
            xcb_get_selection_owner_reply(m_display, asked, nullptr));
        if (!owner || owner->owner == XCB_NONE)
            return true;
        const xcb_window_t window = make_window();
        const xcb_atom_t targets = atom("TARGETS");
        xcb_convert_selection(m_display, window, clipboard, targets, targets, XCB_CURRENT_TIME);
        xcb_flush(m_display);
        return answer_arrives();
    }

private:
    xcb_atom_t atom(std::string_view name)
    {
        const auto asked
            = xcb_intern_atom(m_display, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const Owned<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(m_display, asked, nullptr));
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    xcb_window_t make_window()
    {
        const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(m_display)).data;
        const xcb_window_t window = xcb_generate_id(m_display);
        xcb_create_window(m_display, XCB_COPY_FROM_PARENT, window, screen.root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, 0, nullptr);
        return window;
    }

    bool answer_arrives()
    {
        const auto until = Clock::now() + patience;
        for (;;) {
            const Owned<xcb_generic_event_t> event(xcb_poll_for_event(m_display));
            if (event && (event->response_type & 0x7f) == XCB_SELECTION_NOTIFY)
                return true;
            if (event)
                continue;
            const auto left
                = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now());
            if (left.count() <= 0 || xcb_connection_has_error(m_display))
                return false;
            pollfd wait{ xcb_get_file_descriptor(m_display), POLLIN, 0 };
            ::poll(&wait, 1, static_cast<int>(left.count()));
        }
    }

    xcb_connection_t* m_display;
};

} // namespace

bool clipboard_owner_answers()
{
    return QGuiApplication::platformName() != "xcb" || Probe().owner_answers();
}
#else
bool clipboard_owner_answers()
{
    return true;
}
#endif

} // namespace tessavox
