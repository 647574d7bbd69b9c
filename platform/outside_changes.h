// Tells when something outside has changed, so that nobody has to look all the time.
#pragma once

#include "platform/controls/control.h"

#include <string>

namespace tessavox {

class OutsideChanges {
public:
    virtual ~OutsideChanges() = default;
    /// From now on `notice` runs in the message loop right after a file of the folder, or the
    /// clipboard, may have changed; once for changes that come together, also for those that this
    /// program makes. Not every change can be noticed: that of a file on another machine, or of one
    /// that a link leads to, may go untold. A later call takes the place of an earlier one.
    virtual void watch(const std::string& folder, Handler notice) = 0;
};

} // namespace tessavox
