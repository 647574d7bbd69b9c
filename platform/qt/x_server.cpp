#include "platform/qt/x_server.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace tessavox::x_server {
namespace {

xcb_atom_t atom(xcb_connection_t* server, std::string_view name)
{
    const auto asked
        = xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Owned<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(server, asked, nullptr));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

void Free::operator()(void* owned) const
{
    std::free(owned); // NOLINT(cppcoreguidelines-no-malloc)
}

xcb_connection_t* connection()
{
    const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return application ? application->connection() : nullptr;
}

bool has_tray()
{
    xcb_connection_t* const server = connection();
    if (!server)
        return false;
    static const xcb_atom_t tray = atom(server, "_NET_SYSTEM_TRAY_S0");
    const Owned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, tray), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void keep_above(std::uint32_t window)
{
    xcb_connection_t* const server = connection();
    if (!server)
        return;
    static const xcb_atom_t state = atom(server, "_NET_WM_STATE");
    static const xcb_atom_t above = atom(server, "_NET_WM_STATE_ABOVE");
    constexpr std::uint32_t add = 1, by_a_program = 1;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32; // bits
    message.window = window;
    message.type = state;
    message.data.data32[0] = add;
    message.data.data32[1] = above;
    message.data.data32[3] = by_a_program;
    xcb_send_event(server, 0, xcb_setup_roots_iterator(xcb_get_setup(server)).data->root,
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char*>(&message));
}

} // namespace tessavox::x_server
