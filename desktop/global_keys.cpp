#include "desktop/global_keys.h"

#include "platform/failure.h"

#include <utility>

namespace tessavox {

namespace {

struct KeyRow {
    int id;
    unsigned key_code;
    int text; // what it does
};

// Ctrl with each. There is no number 7, and Ctrl+F10 stays free.
constexpr KeyRow keys[] = {
    { 0, 116, 1129 }, // F5
    { 1, 117, 1131 }, // F6
    { 2, 118, 1130 }, // F7
    { 3, 119, 1132 }, // F8
    { 4, 38, 2358 }, // Up
    { 5, 40, 2359 }, // Down
    { 6, 120, 2360 }, // F9
    { 8, 122, 1134 }, // F11
    { 9, 123, 1135 }, // F12
};

constexpr int last_given_back = 8;

} // namespace

GlobalKeys::GlobalKeys(
    HotKeys& hot_keys, const Texts& texts, std::function<void(std::uint8_t)> DoFunctions)
    : m_keys(hot_keys)
    , m_texts(texts)
    , m_DoFunctions(std::move(DoFunctions))
{
}

void GlobalKeys::register_all()
{
    const auto registered
        = [this](int id) -> bool& { return hotKeyRegistered.at(static_cast<std::size_t>(id)); };
    for (const KeyRow& row : keys) {
        std::string name;
        attempt([&] { name = m_texts.LoadResString(row.text); });
        registered(row.id) = m_keys.RegisterHotKey(row.id, control_modifier, row.key_code, name);
    }
    m_keys.changed = [registered](int id, bool is) { registered(id) = is; };
    m_keys.pressed = [this](int id) { m_DoFunctions(static_cast<std::uint8_t>(id)); };
}

void GlobalKeys::unregister_all()
{
    m_keys.pressed = nullptr;
    m_keys.changed = nullptr;
    for (int id = 0; id <= last_given_back; ++id) {
        if (hotKeyRegistered.at(static_cast<std::size_t>(id)))
            m_keys.UnregisterHotKey(id);
    }
}

} // namespace tessavox
