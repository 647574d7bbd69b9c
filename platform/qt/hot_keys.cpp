#include "platform/qt/hot_keys.h"

#include "platform/qt/x11_hot_keys.h"
#include "platform/qt/x_server.h"

#include <utility>

namespace tessavox {
namespace {

class NoHotKeys : public HotKeys {
public:
    bool RegisterHotKey(int, unsigned, unsigned) override { return false; }
    void UnregisterHotKey(int) override { }
};

} // namespace

std::unique_ptr<HotKeys> make_hot_keys(Forms::Post post)
{
    if (x_server::connection())
        return std::make_unique<X11HotKeys>(std::move(post));
    return std::make_unique<NoHotKeys>();
}

} // namespace tessavox
