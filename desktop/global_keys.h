// The keys that command the program wherever the keyboard focus is.
#pragma once

#include "platform/hot_keys.h"
#include "platform/texts.h"

#include <array>
#include <cstdint>
#include <functional>

namespace tessavox {

class GlobalKeys {
public:
    /// `DoFunctions` runs a command by its number, which is the id of its key.
    GlobalKeys(
        HotKeys& keys, const Texts& texts, std::function<void(std::uint8_t command)> DoFunctions);

    /// Takes all keys; one that another program has never comes.
    void register_all();
    /// Gives the keys back that were taken, but for the last one, Ctrl+F12, which goes with the
    /// process.
    void unregister_all();

    /// By id: whether the key was taken, or has been given since.
    std::array<bool, 31> hotKeyRegistered{};

private:
    HotKeys& m_keys;
    const Texts& m_texts;
    std::function<void(std::uint8_t)> m_DoFunctions;
};

} // namespace tessavox
