// The icon in the desktop's tray.
#pragma once

#include "platform/tray.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace tessavox {

class QtFormWindows;

/// A desktop has a tray if a program answers for it on the session bus (StatusNotifierItem) or
/// holds the tray's selection of the X server. Either may come late, go, and come again; the
/// toolkit decides for one of them when the first icon is made, so none is made before a tray is
/// there.
class QtTray : public QObject, public Tray {
public:
    explicit QtTray(QtFormWindows& windows);
    ~QtTray() override;

    void add(const std::string& tip, const MenuItem& menu) override;
    void remove() override;
    bool has_icon() const override { return m_icon != nullptr || m_is_asking; }

private:
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
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace tessavox
