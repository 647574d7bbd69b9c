#include "platform/qt/x_server.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace tessavox::x_server {
namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); } // NOLINT(cppcoreguidelines-no-malloc)
};
template <class Reply> using ReplyOf = std::unique_ptr<Reply, Free>;

} // namespace

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
    constexpr std::string_view name = "_NET_SYSTEM_TRAY_S0";
    const ReplyOf<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        server, xcb_intern_atom(server, 0, name.size(), name.data()), nullptr));
    if (!atom)
        return false;
    const ReplyOf<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        server, xcb_get_selection_owner(server, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace tessavox::x_server
