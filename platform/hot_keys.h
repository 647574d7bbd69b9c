// Keys that reach the program wherever the keyboard focus is.
#pragma once

#include <functional>
#include <string>

namespace tessavox {

/// Bits of RegisterHotKey's `modifiers`.
constexpr unsigned control_modifier = 2;

class HotKeys {
public:
    virtual ~HotKeys() = default;
    /// Takes a key for the program; `pressed` runs with `id` whenever it is pressed together with
    /// the modifiers, in any state of the lock keys. `key_code`: 112 to 123 are F1 to F12, 38 is Up
    /// and 40 Down. `name` tells users of some desktops what the key does. Returns false where
    /// another program has it, there are no such keys, or it isn't known yet.
    virtual bool RegisterHotKey(
        int id, unsigned modifiers, unsigned key_code, const std::string& name)
        = 0;
    virtual void UnregisterHotKey(int id) = 0;

    std::function<void(int id)> pressed;
    /// Runs when a key becomes the program's, or another's, at a later time.
    std::function<void(int id, bool is_registered)> changed;
};

} // namespace tessavox
