#include "platform/qt/tray.h"

#include "platform/failure.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/x_server.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMenu>
#include <QSystemTrayIcon>

#include <utility>

namespace tessavox {
namespace {

constexpr char bus_service[] = "org.kde.StatusNotifierWatcher";
constexpr char bus_path[] = "/StatusNotifierWatcher";
constexpr char has_host[] = "IsStatusNotifierHostRegistered";
constexpr int look_interval_ms = 3000;

} // namespace

QtTray::QtTray(QtFormWindows& windows)
    : m_windows(windows)
    , m_watcher(bus_service, QDBusConnection::sessionBus(),
          QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration)
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &QtTray::ask_bus);
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
        [this] { bus_answered(false); });
    // Of whoever sends them: to listen to one by its name, Qt waits for the bus to say who it is.
    for (const char* change : { "StatusNotifierHostRegistered", "StatusNotifierHostUnregistered" })
        QDBusConnection::sessionBus().connect(
            {}, bus_path, bus_service, change, this, SLOT(ask_bus()));
    connect(&m_look, &QTimer::timeout, this, &QtTray::look_for_tray);
}

QtTray::~QtTray() = default;

void QtTray::add(const std::string& tip, const MenuItem& menu)
{
    remove();
    m_tip = to_qt(tip);
    m_menu = m_windows.menu_of(menu);
    m_is_wanted = true;
    m_look.start(look_interval_ms);
    m_is_asking = QDBusConnection::sessionBus().isConnected();
    if (m_is_asking)
        ask_bus();
    else
        look_for_tray();
}

// Nothing waits for a bus that doesn't answer.
void QtTray::ask_bus()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        bus_service, bus_path, "org.freedesktop.DBus.Properties", "Get");
    question << bus_service << has_host;
    question.setAutoStartService(false);
    auto* asked
        = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        const QDBusPendingReply<QDBusVariant> answer = *call;
        call->deleteLater();
        bus_answered(!answer.isError() && answer.value().variant().toBool());
    });
}

void QtTray::bus_answered(bool is_there)
{
    m_is_on_bus = is_there;
    const bool was_asking = std::exchange(m_is_asking, false);
    look_for_tray();
    if (was_asking && m_is_wanted && !m_icon && changed)
        attempt(changed);
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
    const bool is_there = (m_is_on_bus && m_is_of_bus.value_or(true))
        || (!m_is_of_bus.value_or(false) && x_server::has_tray());
    if (is_there && !m_icon)
        tray_found();
    else if (!is_there && m_icon)
        tray_gone();
}

void QtTray::tray_found()
{
    if (!m_is_wanted)
        return;
    if (!m_is_of_bus)
        m_is_of_bus = m_is_on_bus;
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
    m_icon.reset();
    if (changed)
        attempt(changed);
}

} // namespace tessavox
