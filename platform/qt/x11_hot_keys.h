// Keys grabbed of the X server.
#pragma once

#include "platform/controls/form.h"
#include "platform/hot_keys.h"

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

struct xcb_connection_t;
struct _XCBKeySymbols;

namespace tessavox {

/// Each key is grabbed once for every state of Caps Lock, Num Lock and Scroll Lock, as the server
/// counts these as modifiers. While a key's handler runs, the same key doesn't start it again.
class X11HotKeys : public HotKeys, public QAbstractNativeEventFilter {
public:
    /// @throws Failure where there is no X server.
    explicit X11HotKeys(Forms::Post post);
    ~X11HotKeys() override;

    bool RegisterHotKey(int id, unsigned modifiers, unsigned key_code) override;
    void UnregisterHotKey(int id) override;

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

private:
    struct Key {
        std::uint16_t modifiers; // as the server numbers them
        std::uint32_t symbol;
        std::vector<std::uint8_t> codes; // the keys of the keyboard that have the symbol
    };
    bool grab(Key& key);
    void ungrab(const Key& key);
    void read_keyboard();
    void key_pressed(std::uint8_t code, std::uint16_t state);
    void start(int id);

    struct FreeSymbols {
        void operator()(_XCBKeySymbols* symbols) const;
    };
    Forms::Post m_post;
    xcb_connection_t* m_server;
    std::uint32_t m_root;
    std::unique_ptr<_XCBKeySymbols, FreeSymbols> m_symbols;
    std::uint16_t m_locks = 0; // the modifiers that the lock keys are
    std::map<int, Key> m_keys;
    std::shared_ptr<std::set<int>> m_running = std::make_shared<std::set<int>>();
};

} // namespace tessavox
