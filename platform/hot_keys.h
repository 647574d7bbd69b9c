// Keys that reach the program wherever the keyboard focus is.
#pragma once

#include <functional>

namespace tessavox {

/// Bits of RegisterHotKey's `modifiers`.
constexpr unsigned control_modifier = 2;

class HotKeys {
public:
    virtual ~HotKeys() = default;
    /// Takes a key for the program; `pressed` runs with `id` whenever it is pressed together with
    /// the modifiers, in any state of the lock keys. `key_code`: 112 to 123 are F1 to F12, 38 is Up
    /// and 40 Down. Returns false where another program has it or there are no such keys.
    virtual bool RegisterHotKey(int id, unsigned modifiers, unsigned key_code) = 0;
    virtual void UnregisterHotKey(int id) = 0;

    std::function<void(int id)> pressed;
};

} // namespace tessavox
