// What the user sees while a command blocks the program for long.
#pragma once

#include <functional>
#include <string>

namespace tessavox {

class BlockingWork {
public:
    virtual ~BlockingWork() = default;
    /// Returns when `is_done` says so (true), or when the user ends it with Escape or the system
    /// asks the program to end (false). Until then nothing of the program runs: no command, no
    /// timer, nothing that was posted; all that waits, and what assistive technologies do to its
    /// windows is refused. But the windows are painted and answer the window manager, and a small
    /// window shows `text` and how much of the work is done: `share`, 0 to 1. Both are asked some
    /// twenty times a second.
    virtual bool wait(const std::string& text, const std::function<bool()>& is_done,
        const std::function<double()>& share)
        = 0;
};

} // namespace tessavox
