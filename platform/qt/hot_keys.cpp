#include "platform/qt/hot_keys.h"

#include "platform/failure.h"
#include "platform/qt/desktop_hot_keys.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/x11_hot_keys.h"
#include "platform/qt/x_server.h"

#include <QGuiApplication>

#include <map>
#include <set>
#include <utility>

namespace tessavox {
namespace {

/// Qt::Key_unknown for one that no program takes.
Qt::Key key_of(unsigned modifiers, unsigned key_code)
{
    constexpr unsigned f1 = 112, f12 = 123, up = 38, down = 40;
    if (modifiers != control_modifier)
        return Qt::Key_unknown;
    if (key_code >= f1 && key_code <= f12)
        return static_cast<Qt::Key>(Qt::Key_F1 + static_cast<int>(key_code - f1));
    return key_code == up ? Qt::Key_Up : key_code == down ? Qt::Key_Down : Qt::Key_unknown;
}

/// In a Wayland session the X server knows only keys that are pressed in one of its windows, which
/// is better than none as long as the desktop itself hasn't given a key.
class SessionHotKeys : public HotKeys {
public:
    explicit SessionHotKeys(Forms::Post post)
        : m_post(std::move(post))
    {
        const auto start_command = [this](int id) { start(id); };
        if (x_server::connection())
            m_x11 = std::make_unique<X11HotKeys>(start_command);
        const bool has_screen = m_x11 || QGuiApplication::platformName().startsWith("wayland");
        if (has_screen)
            m_desktop = DesktopHotKeys::of_this_session({ start_command,
                [this](int id, bool is_given) { desktop_changed(id, is_given); } });
    }

    bool RegisterHotKey(
        int id, unsigned modifiers, unsigned key_code, const std::string& name) override
    {
        const Qt::Key key = key_of(modifiers, key_code);
        if (key == Qt::Key_unknown || !m_keys.try_emplace(id, Key{ modifiers, key_code }).second)
            return false;
        if (m_desktop)
            m_desktop->ask_for(id, key, to_qt(name));
        return take_of_x11(id);
    }

    void UnregisterHotKey(int id) override
    {
        m_keys.erase(id);
        if (m_x11)
            m_x11->give_back(id);
        if (m_desktop)
            m_desktop->give_back(id);
    }

private:
    struct Key {
        unsigned modifiers;
        unsigned key_code;
    };

    bool take_of_x11(int id)
    {
        const Key& key = m_keys.at(id);
        return m_x11 && m_x11->take(id, key.modifiers, key.key_code);
    }

    void desktop_changed(int id, bool is_given)
    {
        if (!m_keys.contains(id))
            return;
        if (is_given && m_x11)
            m_x11->give_back(id);
        const bool is_registered = is_given || take_of_x11(id);
        if (changed)
            changed(id, is_registered);
    }

    /// While a key's command runs, the same key doesn't start it again.
    void start(int id)
    {
        if (!m_keys.contains(id) || !m_running->insert(id).second)
            return;
        m_post([this, id, running = m_running] {
            attempt([&] {
                if (pressed)
                    pressed(id);
            });
            running->erase(id);
        });
    }

    Forms::Post m_post;
    std::map<int, Key> m_keys;
    std::shared_ptr<std::set<int>> m_running = std::make_shared<std::set<int>>();
    std::unique_ptr<X11HotKeys> m_x11; // null where there is no X server
    std::unique_ptr<DesktopHotKeys> m_desktop; // null but in a Wayland session
};

} // namespace

std::unique_ptr<HotKeys> make_hot_keys(Forms::Post post)
{
    return std::make_unique<SessionHotKeys>(std::move(post));
}

} // namespace tessavox
