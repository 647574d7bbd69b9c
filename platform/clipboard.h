// The clipboard of the desktop.
#pragma once

#include "platform/text.h"

namespace tessavox {

/// Text on the clipboard; other content counts as none.
class Clipboard {
public:
    virtual ~Clipboard() = default;
    /// The empty text if there is none, or its owner doesn't answer in time. Waits some 0.3 s for
    /// an owner that is slow; one that was too slow is asked again by the next call.
    virtual TextSlice GetText() = 0;
    /// Whether there is text, as far as is known without waiting for anybody.
    virtual bool has_text() = 0;
};

} // namespace tessavox
