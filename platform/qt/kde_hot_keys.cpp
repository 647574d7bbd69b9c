#include "platform/qt/kde_hot_keys.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusReply>

#include <algorithm>
#include <utility>

namespace tessavox {

QDBusArgument& operator<<(QDBusArgument& argument, const KdeKeySequence& sequence)
{
    argument.beginStructure();
    argument << QList<int>(sequence.keys.begin(), sequence.keys.end());
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KdeKeySequence& sequence)
{
    QList<int> keys;
    argument.beginStructure();
    argument >> keys;
    argument.endStructure();
    std::copy_n(keys.begin(), std::min(keys.size(), qsizetype(sequence.keys.size())),
        sequence.keys.begin());
    return argument;
}

namespace {

constexpr char service[] = "org.kde.kglobalaccel";
constexpr char own_name[] = "tessavox";

QDBusMessage call_of(const char* method, const QVariantList& arguments)
{
    QDBusMessage message
        = QDBusMessage::createMethodCall(service, "/kglobalaccel", "org.kde.KGlobalAccel", method);
    message.setAutoStartService(false); // in a Wayland session it is part of the compositor
    message.setArguments(arguments);
    return message;
}

bool has_key(const KdeKeySequences& sequences)
{
    return std::any_of(sequences.begin(), sequences.end(),
        [](const KdeKeySequence& sequence) { return sequence.keys.front() != 0; });
}

} // namespace

KdeHotKeys::KdeHotKeys(Listener listener)
    : DesktopHotKeys(service, std::move(listener))
{
    qDBusRegisterMetaType<KdeKeySequence>();
    qDBusRegisterMetaType<KdeKeySequences>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect({}, QString("/component/") + own_name, "org.kde.kglobalaccel.Component",
        "globalShortcutPressed", this, SLOT(key_pressed(QString, QString, qlonglong)));
    bus.connect({}, "/kglobalaccel", "org.kde.KGlobalAccel", "yourShortcutsChanged", this,
        SLOT(keys_changed(QStringList, QList<tessavox::KdeKeySequence>)));
}

KdeHotKeys::~KdeHotKeys()
{
    for (const auto& [id, key] : keys())
        QDBusConnection::sessionBus().send(call_of("setInactive", { action(id) }));
}

void KdeHotKeys::give_back(int id)
{
    if (keys().contains(id))
        QDBusConnection::sessionBus().send(call_of("setInactive", { action(id) }));
    DesktopHotKeys::give_back(id);
}

QStringList KdeHotKeys::action(int id) const
{
    return { own_name, QString::number(id), "Tessavox", keys().at(id).name };
}

void KdeHotKeys::begin()
{
    constexpr uint is_present = 2, is_default = 8; // the default is what the user can go back to
    for (const auto& [id, key] : keys()) {
        const int combined = QKeyCombination(Qt::ControlModifier, key.key).toCombined();
        const auto wanted = QVariant::fromValue(KdeKeySequences{ KdeKeySequence{ { combined } } });
        call(call_of("doRegister", { action(id) }), nullptr);
        call(call_of("setShortcutKeys", { action(id), wanted, is_default }), nullptr);
        call(call_of("setShortcutKeys", { action(id), wanted, is_present }),
            [this, id = id](const QDBusMessage& answer) {
                set_given(id, has_key(QDBusReply<KdeKeySequences>(answer).value()));
            });
    }
}

void KdeHotKeys::key_pressed(const QString& program, const QString& id, qlonglong)
{
    if (program == own_name)
        press(id);
}

void KdeHotKeys::keys_changed(const QStringList& action, const KdeKeySequences& keys)
{
    if (action.value(0) == own_name)
        set_given(action.value(1).toInt(), has_key(keys));
}

} // namespace tessavox
