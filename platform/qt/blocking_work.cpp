#include "platform/qt/blocking_work.h"

#include <chrono>
#include <thread>

namespace tessavox {

bool QtBlockingWork::wait(
    const std::string&, const std::function<bool()>& is_done, const std::function<double()>&)
{
    while (!is_done())
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return true;
}

} // namespace tessavox
