// What is asked of the X server directly, past the toolkit.
#pragma once

struct xcb_connection_t;

namespace tessavox::x_server {

/// The toolkit's connection, or null where windows aren't shown by an X server.
xcb_connection_t* connection();

/// Whether a program holds the selection by which icons find the tray of the first screen
/// (freedesktop.org, System Tray Protocol).
bool has_tray();

} // namespace tessavox::x_server
