#include "platform/qt/desktop_hot_keys.h"

#include "platform/qt/kde_hot_keys.h"
#include "platform/qt/portal_hot_keys.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace tessavox {

/// KDE has such a portal too, but up to Plasma 6.3 it opens the system settings at each start, and
/// that of Plasma 5.27 gives no keys at all.
std::unique_ptr<DesktopHotKeys> DesktopHotKeys::of_this_session(Listener listener)
{
    if (!qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return nullptr;
    if (qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':').contains("KDE"))
        return std::make_unique<KdeHotKeys>(std::move(listener));
    return std::make_unique<PortalHotKeys>(std::move(listener));
}

DesktopHotKeys::DesktopHotKeys(const char* service, Listener listener)
    : m_listener(std::move(listener))
    , m_service(service, QDBusConnection::sessionBus())
{
    connect(&m_service, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString&, const QString& old_owner, const QString& owner) {
            if (!old_owner.isEmpty())
                lose_all();
            if (!owner.isEmpty() && m_is_claimed && !m_is_asked)
                start();
        });
}

void DesktopHotKeys::ask_for(int id, Qt::Key key, const QString& name)
{
    if (m_keys.empty())
        QMetaObject::invokeMethod(this, &DesktopHotKeys::claim, Qt::QueuedConnection);
    m_keys.emplace(id, Key{ key, name });
}

/// A desktop may tell every copy of the program that a key was pressed, and only one shall obey.
void DesktopHotKeys::claim()
{
    constexpr uint do_not_queue = 4, owns = 1, owns_already = 4; // of the D-Bus specification
    QDBusMessage request = QDBusMessage::createMethodCall(
        "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName");
    request << QString("org.tessavox.GlobalKeys") << do_not_queue;
    call(request, [this](const QDBusMessage& answer) {
        const uint result = answer.arguments().value(0).toUInt();
        if (result != owns && result != owns_already)
            return;
        m_is_claimed = true;
        start();
    });
}

void DesktopHotKeys::start()
{
    m_is_asked = true;
    begin();
}

void DesktopHotKeys::call(const QDBusMessage& message, const Answer& answered)
{
    const auto pending = QDBusConnection::sessionBus().asyncCall(message);
    auto* const watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answered] {
        if (watcher->isError())
            lose_all();
        else if (answered)
            answered(watcher->reply());
        watcher->deleteLater();
    });
}

void DesktopHotKeys::set_given(int id, bool is_given)
{
    const auto found = m_keys.find(id);
    if (found != m_keys.end() && std::exchange(found->second.is_given, is_given) != is_given)
        m_listener.changed(id, is_given);
}

void DesktopHotKeys::keep(const std::set<int>& given)
{
    for (const auto& [id, key] : std::map(m_keys))
        set_given(id, given.contains(id));
}

void DesktopHotKeys::lose_all()
{
    m_is_asked = false;
    keep({});
}

void DesktopHotKeys::press(const QString& id)
{
    bool is_number = false;
    const int number = id.toInt(&is_number);
    if (is_number && m_keys.contains(number))
        m_listener.pressed(number);
}

} // namespace tessavox
