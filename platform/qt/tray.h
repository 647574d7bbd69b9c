// The icon in the desktop's tray.
#pragma once

#include "platform/tray.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>

class QMenu;
class QSystemTrayIcon;

namespace tessavox {

class QtFormWindows;

/// A desktop has a tray if the service of the session bus that icons are told to has a host that
/// shows them (StatusNotifierItem), or if a program holds the tray's selection of the X server.
/// Either may come late, go, and come again; the toolkit decides for one of them, for good, when
/// the first icon is made, so none is made before a tray is there.
class QtTray : public QObject, public Tray {
    Q_OBJECT

public:
    explicit QtTray(QtFormWindows& windows);
    ~QtTray() override;

    void add(const std::string& tip, const MenuItem& menu) override;
    void remove() override;
    bool has_icon() const override { return m_icon != nullptr || m_is_asking; }

private slots:
    void ask_bus();

private:
    void bus_answered(bool is_there);
    void look_for_tray();
    void tray_found();
    void tray_gone();

    QtFormWindows& m_windows;
    QDBusServiceWatcher m_watcher;
    QTimer m_look; // the X server sends no notice of its selection
    QString m_tip;
    QMenu* m_menu = nullptr;
    bool m_is_wanted = false;
    bool m_is_asking = false; // whether there is a tray
    bool m_is_on_bus = false;
    std::optional<bool> m_is_of_bus; // where icons go; not known before the first one
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace tessavox
