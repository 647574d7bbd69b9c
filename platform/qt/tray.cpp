#include "platform/qt/tray.h"

#include "platform/failure.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/x_server.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMenu>
#include <QSystemTrayIcon>

namespace tessavox {
namespace {

constexpr char bus_service[] = "org.kde.StatusNotifierWatcher";
constexpr int look_interval_ms = 3000;

} // namespace

QtTray::QtTray(QtFormWindows& windows)
    : m_windows(windows)
    , m_watcher(bus_service, QDBusConnection::sessionBus(),
          QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration)
{
    const auto registered = [this](bool is_there) {
        m_is_on_bus = is_there;
        if (is_there)
            tray_found();
        else
            tray_gone();
    };
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this,
        [registered] { registered(true); });
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
        [registered] { registered(false); });
    connect(&m_look, &QTimer::timeout, this, [this] { look_for_tray(); });
}

QtTray::~QtTray() = default;

void QtTray::add(const std::string& tip, const MenuItem& menu)
{
    remove();
    m_tip = to_qt(tip);
    m_menu = m_windows.menu_of(menu);
    m_is_wanted = true;
    m_look.start(look_interval_ms);
    // Nothing waits for a bus that doesn't answer.
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        look_for_tray();
        return;
    }
    m_is_asking = true;
    auto* asked = new QDBusPendingCallWatcher(
        bus.interface()->asyncCall("NameHasOwner", QString(bus_service)), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        const QDBusPendingReply<bool> answer = *call;
        call->deleteLater();
        m_is_on_bus = !answer.isError() && answer.value();
        m_is_asking = false;
        look_for_tray();
        if (m_is_wanted && !m_icon && changed)
            attempt(changed);
    });
}

void QtTray::remove()
{
    m_is_wanted = false;
    m_is_asking = false;
    m_look.stop();
    m_icon.reset();
}

void QtTray::look_for_tray()
{
    const bool is_there = m_is_on_bus || x_server::has_tray();
    if (is_there && !m_icon)
        tray_found();
    else if (!is_there && m_icon)
        tray_gone();
}

void QtTray::tray_found()
{
    if (!m_is_wanted || m_icon)
        return;
    m_is_asking = false;
    m_icon = std::make_unique<QSystemTrayIcon>(QApplication::windowIcon());
    m_icon->setToolTip(m_tip);
    m_icon->setContextMenu(m_menu);
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
        [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger && left_button)
                attempt(left_button);
        });
    m_icon->show();
    if (changed)
        attempt(changed);
}

void QtTray::tray_gone()
{
    if (!m_icon)
        return;
    m_icon.reset();
    if (changed)
        attempt(changed);
}

} // namespace tessavox
