#include "desktop/global_keys.h"

#include <utility>

namespace tessavox {

namespace {

struct KeyRow {
    int id;
    unsigned key_code;
};

// Ctrl with each. There is no number 7, and Ctrl+F10 stays free.
constexpr KeyRow keys[] = {
    { 0, 116 }, // F5
    { 1, 117 }, // F6
    { 2, 118 }, // F7
    { 3, 119 }, // F8
    { 4, 38 }, // Up
    { 5, 40 }, // Down
    { 6, 120 }, // F9
    { 8, 122 }, // F11
    { 9, 123 }, // F12
};

constexpr int last_given_back = 8;

} // namespace

GlobalKeys::GlobalKeys(HotKeys& hot_keys, std::function<void(std::uint8_t)> DoFunctions)
    : m_keys(hot_keys)
    , m_DoFunctions(std::move(DoFunctions))
{
}

void GlobalKeys::register_all()
{
    for (const KeyRow& row : keys)
        hotKeyRegistered.at(static_cast<std::size_t>(row.id))
            = m_keys.RegisterHotKey(row.id, control_modifier, row.key_code);
    m_keys.pressed = [this](int id) { m_DoFunctions(static_cast<std::uint8_t>(id)); };
}

void GlobalKeys::unregister_all()
{
    m_keys.pressed = nullptr;
    for (int id = 0; id <= last_given_back; ++id) {
        if (hotKeyRegistered.at(static_cast<std::size_t>(id)))
            m_keys.UnregisterHotKey(id);
    }
}

} // namespace tessavox
