// Keys grabbed of the X server.
#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

struct xcb_connection_t;
struct _XCBKeySymbols; // NOLINT(bugprone-reserved-identifier): the library calls it so

namespace tessavox {

/// Each key is grabbed once for every state of Caps Lock, Num Lock and Scroll Lock, as the server
/// counts these as modifiers.
class X11HotKeys : public QAbstractNativeEventFilter {
public:
    using Pressed = std::function<void(int id)>;

    /// @throws Failure where there is no X server.
    explicit X11HotKeys(Pressed pressed);
    ~X11HotKeys() override;

    /// As HotKeys has it.
    bool take(int id, unsigned modifiers, unsigned key_code);
    void give_back(int id);

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
    void keyboard_changed();
    bool key_pressed(std::uint8_t code, std::uint16_t state);

    struct FreeSymbols {
        void operator()(_XCBKeySymbols* symbols) const;
    };
    Pressed m_pressed;
    xcb_connection_t* m_server;
    std::uint32_t m_root;
    std::uint8_t m_keyboard_event; // the number of the events of the X Keyboard Extension
    std::unique_ptr<_XCBKeySymbols, FreeSymbols> m_symbols;
    std::uint16_t m_locks = 0; // the modifiers that the lock keys are
    std::map<int, Key> m_keys;
};

} // namespace tessavox
