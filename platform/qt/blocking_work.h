// Keeps the windows alive while a command blocks the program.
#pragma once

#include "platform/blocking_work.h"

namespace tessavox {

class QtBlockingWork : public BlockingWork {
public:
    bool wait(const std::string& text, const std::function<bool()>& is_done,
        const std::function<double()>& share) override;
};

} // namespace tessavox
