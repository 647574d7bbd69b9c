// What is asked of the X server directly, past the toolkit.
#pragma once

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace tessavox::x_server {

struct Free {
    void operator()(void* owned) const;
};
/// An answer, or a list, that the X library hands over to be freed.
template <class Kind> using Owned = std::unique_ptr<Kind, Free>;

/// The toolkit's connection, or null where windows aren't shown by an X server.
xcb_connection_t* connection();

/// Whether a program holds the selection by which icons find the tray of the first screen
/// (freedesktop.org, System Tray Protocol).
bool has_tray();

/// Asks the window manager to keep a window above the others, also where the user has told it not
/// to (freedesktop.org, Extended Window Manager Hints).
void keep_above(std::uint32_t window);

} // namespace tessavox::x_server
