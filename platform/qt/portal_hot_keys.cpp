#include "platform/qt/portal_hot_keys.h"

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QKeySequence>

#include <utility>

namespace tessavox {

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

namespace {

constexpr char portal_service[] = "org.freedesktop.portal.Desktop";
constexpr char portal_path[] = "/org/freedesktop/portal/desktop";
constexpr char shortcuts_interface[] = "org.freedesktop.portal.GlobalShortcuts";
/// The same at each start, as a desktop may remember by it whose the keys are.
constexpr char own_token[] = "tessavox";

/// Where the portal puts an object of this program. It is known beforehand, so that an answer can't
/// come before somebody listens.
QString object_path(const char* kind, const QString& token)
{
    QString program = QDBusConnection::sessionBus().baseService().mid(1);
    program.replace('.', '_');
    return QString("%1/%2/%3/%4").arg(portal_path, kind, program, token);
}

PortalShortcuts shortcuts_in(const QVariant& value)
{
    if (!value.canConvert<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "a(sa{sv})")
        return {};
    return qdbus_cast<PortalShortcuts>(argument);
}

} // namespace

PortalHotKeys::PortalHotKeys(Listener listener)
    : DesktopHotKeys(portal_service, std::move(listener))
    , m_session(object_path("session", own_token))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcuts>();
    // Of whoever sends them: to listen to one by its name, Qt waits for the bus to say who it is.
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect({}, portal_path, shortcuts_interface, "Activated", this,
        SLOT(key_pressed(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    bus.connect({}, portal_path, shortcuts_interface, "ShortcutsChanged", this,
        SLOT(keys_changed(QDBusObjectPath, QList<tessavox::PortalShortcut>)));
    bus.connect({}, m_session.path(), "org.freedesktop.portal.Session", "Closed", this,
        SLOT(session_closed()));
}

void PortalHotKeys::begin()
{
    request("CreateSession", {}, { { "session_handle_token", own_token } },
        SLOT(session_made(uint, QVariantMap)));
}

void PortalHotKeys::request(
    const char* method, const QVariantList& arguments, QVariantMap options, const char* answer_slot)
{
    const QString token = own_token + QString::number(++m_requests);
    options["handle_token"] = token;
    QDBusConnection::sessionBus().connect({}, object_path("request", token),
        "org.freedesktop.portal.Request", "Response", this, answer_slot);
    QDBusMessage message
        = QDBusMessage::createMethodCall(portal_service, portal_path, shortcuts_interface, method);
    message.setArguments(arguments + QVariantList{ options });
    call(message, nullptr); // the answer proper comes as a signal
}

PortalShortcuts PortalHotKeys::wanted() const
{
    PortalShortcuts shortcuts;
    for (const auto& [id, key] : keys()) {
        const QString trigger
            = "CTRL+" + QKeySequence(key.key).toString(QKeySequence::PortableText);
        shortcuts.append({ QString::number(id),
            { { "description", key.name }, { "preferred_trigger", trigger } } });
    }
    return shortcuts;
}

void PortalHotKeys::session_made(uint response, const QVariantMap&)
{
    if (response != 0)
        return;
    request("BindShortcuts",
        { QVariant::fromValue(m_session), QVariant::fromValue(wanted()), QString() }, {},
        SLOT(keys_given(uint, QVariantMap)));
}

void PortalHotKeys::keys_given(uint response, const QVariantMap& results)
{
    if (response == 0)
        keep_shortcuts(shortcuts_in(results.value("shortcuts")));
}

void PortalHotKeys::keys_changed(const QDBusObjectPath& session, const PortalShortcuts& shortcuts)
{
    if (session == m_session)
        keep_shortcuts(shortcuts);
}

/// A key that the user has taken away, or that is another program's, comes without a trigger.
void PortalHotKeys::keep_shortcuts(const PortalShortcuts& shortcuts)
{
    std::set<int> given;
    for (const PortalShortcut& shortcut : shortcuts) {
        if (!shortcut.properties.value("trigger_description").toString().isEmpty())
            given.insert(shortcut.id.toInt());
    }
    keep(given);
}

void PortalHotKeys::key_pressed(
    const QDBusObjectPath& session, const QString& id, qulonglong, const QVariantMap&)
{
    if (session == m_session)
        press(id);
}

void PortalHotKeys::session_closed()
{
    lose_all();
}

} // namespace tessavox
