#include "platform/qt/x11_hot_keys.h"

#include "platform/failure.h"
#include "platform/hot_keys.h"
#include "platform/qt/x_server.h"

#include <QCoreApplication>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace tessavox {
namespace {

// Of X11's keysymdef.h.
constexpr xcb_keysym_t f1_symbol = 0xffbe;
constexpr xcb_keysym_t up_symbol = 0xff52;
constexpr xcb_keysym_t down_symbol = 0xff54;
constexpr xcb_keysym_t num_lock_symbol = 0xff7f;
constexpr xcb_keysym_t scroll_lock_symbol = 0xff14;
constexpr std::uint16_t all_modifiers = 0xff; // without the mouse buttons
// Of the X Keyboard Extension's events, which have one number among them.
constexpr std::uint8_t new_keyboard = 0;
constexpr std::uint8_t no_such_event = 0xff;

xcb_keysym_t symbol_of(unsigned key_code)
{
    constexpr unsigned f1 = 112, f12 = 123, up = 38, down = 40;
    if (key_code >= f1 && key_code <= f12)
        return f1_symbol + (key_code - f1);
    return key_code == up ? up_symbol : key_code == down ? down_symbol : XCB_NO_SYMBOL;
}

std::vector<std::uint8_t> codes_of(xcb_key_symbols_t* symbols, xcb_keysym_t symbol)
{
    const x_server::Owned<xcb_keycode_t> list(xcb_key_symbols_get_keycode(symbols, symbol));
    std::vector<std::uint8_t> codes;
    for (const xcb_keycode_t* code = list.get(); code && *code != XCB_NO_SYMBOL; ++code)
        codes.push_back(*code);
    return codes;
}

xcb_window_t first_root(xcb_connection_t* server)
{
    return xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
}

std::uint8_t keyboard_event_of(xcb_connection_t* server)
{
    constexpr std::string_view name = "XKEYBOARD";
    const x_server::Owned<xcb_query_extension_reply_t> extension(xcb_query_extension_reply(
        server, xcb_query_extension(server, name.size(), name.data()), nullptr));
    return extension && extension->present ? extension->first_event : no_such_event;
}

/// Which of the eight modifiers a key is; 0 if it is none.
std::uint16_t modifier_of(xcb_connection_t* server, const std::vector<std::uint8_t>& codes)
{
    const x_server::Owned<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(server, xcb_get_modifier_mapping(server), nullptr));
    if (!mapping)
        return 0;
    const xcb_keycode_t* const keys = xcb_get_modifier_mapping_keycodes(mapping.get());
    std::uint16_t found = 0;
    constexpr int modifiers = 8;
    for (int i = 0; i < modifiers * mapping->keycodes_per_modifier; ++i) {
        for (const std::uint8_t code : codes) {
            if (code != 0 && keys[i] == code)
                found |= static_cast<std::uint16_t>(1u << (i / mapping->keycodes_per_modifier));
        }
    }
    return found;
}

/// Every combination of the lock modifiers, none of them included.
std::vector<std::uint16_t> states_of(std::uint16_t locks)
{
    std::vector<std::uint16_t> states;
    std::uint16_t state = locks;
    for (;;) {
        states.push_back(state);
        if (state == 0)
            return states;
        state = static_cast<std::uint16_t>((state - 1) & locks);
    }
}

} // namespace

void X11HotKeys::FreeSymbols::operator()(_XCBKeySymbols* symbols) const
{
    xcb_key_symbols_free(symbols);
}

X11HotKeys::X11HotKeys(Pressed pressed)
    : m_pressed(std::move(pressed))
    , m_server(x_server::connection())
{
    if (!m_server)
        throw Failure("no X server");
    m_root = first_root(m_server);
    m_keyboard_event = keyboard_event_of(m_server);
    read_keyboard();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys() = default;

void X11HotKeys::read_keyboard()
{
    m_symbols.reset(xcb_key_symbols_alloc(m_server));
    m_locks = static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK
        | modifier_of(m_server, codes_of(m_symbols.get(), num_lock_symbol))
        | modifier_of(m_server, codes_of(m_symbols.get(), scroll_lock_symbol)));
}

bool X11HotKeys::take(int id, unsigned modifiers, unsigned key_code)
{
    Key key{ static_cast<std::uint16_t>(modifiers == control_modifier ? XCB_MOD_MASK_CONTROL : 0),
        symbol_of(key_code), {} };
    if (key.modifiers == 0 || key.symbol == XCB_NO_SYMBOL || m_keys.contains(id) || !grab(key))
        return false;
    m_keys.emplace(id, std::move(key));
    return true;
}

/// All or none of the key's states are taken.
bool X11HotKeys::grab(Key& key)
{
    key.codes = codes_of(m_symbols.get(), key.symbol);
    std::vector<xcb_void_cookie_t> asked;
    for (const std::uint8_t code : key.codes) {
        for (const std::uint16_t locks : states_of(m_locks))
            asked.push_back(xcb_grab_key_checked(m_server, 0, m_root, key.modifiers | locks, code,
                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool taken = !asked.empty();
    for (const xcb_void_cookie_t& cookie : asked) {
        const x_server::Owned<xcb_generic_error_t> error(xcb_request_check(m_server, cookie));
        taken = taken && !error;
    }
    if (!taken)
        ungrab(key);
    return taken;
}

void X11HotKeys::ungrab(const Key& key)
{
    for (const std::uint8_t code : key.codes) {
        for (const std::uint16_t locks : states_of(m_locks))
            xcb_ungrab_key(m_server, code, m_root, key.modifiers | locks);
    }
    xcb_flush(m_server);
}

void X11HotKeys::give_back(int id)
{
    const auto found = m_keys.find(id);
    if (found == m_keys.end())
        return;
    ungrab(found->second);
    m_keys.erase(found);
}

bool X11HotKeys::nativeEventFilter(const QByteArray& type, void* message, qintptr*)
{
    if (type != "xcb_generic_event_t")
        return false;
    auto* const event = static_cast<xcb_generic_event_t*>(message);
    constexpr std::uint8_t kind_bits = 0x7f;
    const std::uint8_t kind = event->response_type & kind_bits;
    if (kind == XCB_KEY_PRESS) {
        // While a menu of ours has the keyboard, they come to its window.
        const auto* const press = reinterpret_cast<xcb_key_press_event_t*>(event);
        return key_pressed(press->detail, press->state) || press->event == m_root;
    }
    if (kind == XCB_KEY_RELEASE)
        return reinterpret_cast<xcb_key_release_event_t*>(event)->event == m_root;
    // Whom the extension tells of a new keyboard isn't told of its mapping.
    if (kind == XCB_MAPPING_NOTIFY || (kind == m_keyboard_event && event->pad0 == new_keyboard))
        keyboard_changed();
    return false;
}

/// The keys may lie elsewhere now.
void X11HotKeys::keyboard_changed()
{
    for (const auto& [id, key] : m_keys)
        ungrab(key);
    read_keyboard();
    for (auto& [id, key] : m_keys)
        grab(key);
}

/// Returns whether it is one of ours.
bool X11HotKeys::key_pressed(std::uint8_t code, std::uint16_t state)
{
    const auto wanted = static_cast<std::uint16_t>(state & all_modifiers & ~m_locks);
    for (const auto& [id, key] : m_keys) {
        const bool has_code
            = std::find(key.codes.begin(), key.codes.end(), code) != key.codes.end();
        if (has_code && key.modifiers == wanted) {
            m_pressed(id);
            return true;
        }
    }
    return false;
}

} // namespace tessavox
