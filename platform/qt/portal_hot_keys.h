// Keys given by the portal org.freedesktop.portal.GlobalShortcuts.
#pragma once

#include "platform/qt/desktop_hot_keys.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QList>
#include <QVariantMap>

namespace tessavox {

/// One key, as the portal and programs tell each other of it.
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
using PortalShortcuts = QList<PortalShortcut>;
QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

class PortalHotKeys : public DesktopHotKeys {
    Q_OBJECT

public:
    explicit PortalHotKeys(Listener listener);

protected:
    void begin() override;

private slots:
    void session_made(uint response, const QVariantMap& results);
    void keys_given(uint response, const QVariantMap& results);
    void keys_changed(
        const QDBusObjectPath& session, const QList<tessavox::PortalShortcut>& shortcuts);
    void key_pressed(const QDBusObjectPath& session, const QString& id, qulonglong milliseconds,
        const QVariantMap& options);
    void session_closed();

private:
    void request(const char* method, const QVariantList& arguments, QVariantMap options,
        const char* answer_slot);
    PortalShortcuts wanted() const;
    void keep_shortcuts(const PortalShortcuts& shortcuts);

    int m_requests = 0;
    QDBusObjectPath m_session; // where the portal puts it
};

} // namespace tessavox
