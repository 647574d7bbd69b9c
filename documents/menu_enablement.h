// Which commands can be given now.
#pragma once

namespace tessavox {

struct MainControls;
struct Process;

/// Enables and disables menus and tool buttons by the count of documents, the reading and the
/// selection of the active one, and the clipboard. It runs with every change of a selection, so it
/// costs next to nothing.
void setmenu(Process& process, MainControls& main);

} // namespace tessavox
