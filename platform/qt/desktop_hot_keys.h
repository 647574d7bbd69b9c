// Keys that the desktop of a Wayland session gives to programs, wherever the focus is.
#pragma once

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <set>

namespace tessavox {

/// Asks the desktop for all keys together, and again when the service that gives them comes anew.
/// Nothing waits for it: it may ask the user first, answer nonsense, or not be there. Of several
/// copies of the program the first one has the keys.
class DesktopHotKeys : public QObject {
public:
    struct Listener {
        std::function<void(int id)> pressed;
        std::function<void(int id, bool is_given)> changed;
    };
    /// What this session has; null where it is no Wayland session.
    static std::unique_ptr<DesktopHotKeys> of_this_session(Listener listener);

    /// What is asked for during one message is asked for together. The key is pressed together with
    /// Ctrl; `name` tells users what it does.
    void ask_for(int id, Qt::Key key, const QString& name);
    virtual void give_back(int id) { m_keys.erase(id); }

protected:
    struct Key {
        Qt::Key key;
        QString name;
        bool is_given = false;
    };
    /// `service` is the name on the session bus of the one that gives the keys.
    DesktopHotKeys(const char* service, Listener listener);

    virtual void begin() = 0; // asks for all keys
    using Answer = std::function<void(const QDBusMessage& answer)>;
    /// Calls the service. `answered` isn't run if that fails, then all keys are lost.
    void call(const QDBusMessage& message, const Answer& answered);
    const std::map<int, Key>& keys() const { return m_keys; }
    void set_given(int id, bool is_given);
    void keep(const std::set<int>& given); // the others aren't given
    void lose_all();
    void press(const QString& id);

private:
    void claim();
    void start();

    Listener m_listener;
    QDBusServiceWatcher m_service;
    std::map<int, Key> m_keys;
    bool m_is_claimed = false;
    bool m_is_asked = false;
};

} // namespace tessavox
