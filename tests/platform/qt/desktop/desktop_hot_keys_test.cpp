#include "platform/qt/kde_hot_keys.h"
#include "platform/qt/portal_hot_keys.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace tessavox {
namespace {

constexpr int bound_ms = 20'000;
constexpr char portal[] = "org.freedesktop.portal.Desktop";
constexpr char portal_path[] = "/org/freedesktop/portal/desktop";
constexpr char kde[] = "org.kde.kglobalaccel";

/// A service of the desktop that answers calls as the test wants; it dies with this object.
class Service : public QDBusVirtualObject {
public:
    using Answers = std::function<void(const QDBusMessage& call, const QDBusConnection& bus)>;

    Service(const char* name, Answers answers)
        : m_answers(std::move(answers))
        , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
    {
        m_bus.registerVirtualObject("/", this, QDBusConnection::SubPath);
        EXPECT_TRUE(m_bus.registerService(name));
    }
    ~Service() override { QDBusConnection::disconnectFromBus(m_bus.name()); }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override
    {
        calls += call.member().toStdString() + " ";
        m_answers(call, bus);
        return true;
    }
    void tell(const QString& path, const char* interface, const char* name,
        const QVariantList& arguments) const
    {
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
        signal.setArguments(arguments);
        m_bus.send(signal);
    }

    std::string calls;

private:
    Answers m_answers;
    QDBusConnection m_bus;
};

void respond(const QDBusMessage& call, const QDBusConnection& bus, uint code,
    const QVariantMap& results = {})
{
    const auto options = qdbus_cast<QVariantMap>(call.arguments().last());
    const QString program = call.service().mid(1).replace('.', '_');
    const QString path
        = QString("%1/request/%2/%3").arg(portal_path, program, options["handle_token"].toString());
    bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    QDBusMessage signal
        = QDBusMessage::createSignal(path, "org.freedesktop.portal.Request", "Response");
    signal << code << results;
    bus.send(signal);
}

QVariantMap all_but_one_given()
{
    return { { "shortcuts",
        QVariant::fromValue(PortalShortcuts{ { "0", { { "trigger_description", "Ctrl+F5" } } },
            { "1", { { "trigger_description", "" } } },
            { "77", { { "trigger_description", "Ctrl+F6" } } } }) } };
}

struct DesktopHotKeysTest : testing::Test {
    void ask(const char* desktop)
    {
        qputenv("WAYLAND_DISPLAY", "none");
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        told.clear();
        keys = DesktopHotKeys::of_this_session({ [this](
                                                     int id) { told += " " + std::to_string(id); },
            [this](int id, bool given) { told += (given ? " +" : " -") + std::to_string(id); } });
        keys->ask_for(0, Qt::Key_F5, "Read");
        keys->ask_for(1, Qt::Key_Up, "Faster");
    }
    ~DesktopHotKeysTest() override { qunsetenv("WAYLAND_DISPLAY"); }
    bool is_told(const std::string& what)
    {
        return QTest::qWaitFor([&] { return told == what; }, bound_ms);
    }

    std::string told;
    std::unique_ptr<DesktopHotKeys> keys;
};

/// The portal's answers to the two requests.
Service::Answers portal_that(const Service::Answers& session, const Service::Answers& keys)
{
    return [=](const QDBusMessage& call, const QDBusConnection& bus) {
        (call.member() == "CreateSession" ? session : keys)(call, bus);
    };
}

void agree(const QDBusMessage& call, const QDBusConnection& bus)
{
    respond(call, bus, 0, all_but_one_given());
}

TEST_F(DesktopHotKeysTest, ArePressedAsThePortalSaysAndLostWithIt)
{
    QVariantList asked;
    auto service = std::make_unique<Service>(
        portal, portal_that(agree, [&](const QDBusMessage& call, const QDBusConnection& bus) {
            asked = call.arguments();
            agree(call, bus);
        }));
    ask("GNOME");
    ASSERT_TRUE(is_told(" +0"));
    const auto wanted = qdbus_cast<PortalShortcuts>(asked.value(1));
    ASSERT_EQ(wanted.size(), 2);
    EXPECT_EQ(wanted[0].properties["preferred_trigger"], "CTRL+F5");
    EXPECT_EQ(wanted[1].properties["preferred_trigger"], "CTRL+Up");
    EXPECT_EQ(wanted[1].properties["description"], "Faster");

    const auto session = asked.value(0);
    const auto other = QVariant::fromValue(QDBusObjectPath("/other"));
    const auto press = [&](const QVariantList& arguments) {
        service->tell(
            portal_path, "org.freedesktop.portal.GlobalShortcuts", "Activated", arguments);
    };
    for (const char* id : { "99", "x", "", "-1" })
        press({ session, id, 1ull, QVariantMap() });
    press({ other, "0", 1ull, QVariantMap() });
    press({ 5, "0" });
    press({ session, "1", 1ull, QVariantMap() });
    EXPECT_TRUE(is_told(" +0 1"));
    service.reset();
    EXPECT_TRUE(is_told(" +0 1 -0"));
}

TEST_F(DesktopHotKeysTest, AreNotThereWhereThePortalGivesNoneButComeWithABetterOne)
{
    const Service::Answers silent = [](auto&, auto&) {};
    const Service::Answers fail = [](const QDBusMessage& call, const QDBusConnection& bus) {
        bus.send(call.createErrorReply(QDBusError::UnknownMethod, "no such thing"));
    };
    const Service::Answers deny
        = [](const QDBusMessage& call, const QDBusConnection& bus) { respond(call, bus, 1); };
    const Service::Answers nonsense = [](const QDBusMessage& call, const QDBusConnection& bus) {
        respond(call, bus, 0, { { "shortcuts", QStringList{ "0" } } });
    };
    const struct {
        const char* calls;
        Service::Answers answers;
    } rows[] = {
        { "CreateSession ", portal_that(silent, silent) },
        { "CreateSession ", portal_that(fail, silent) },
        { "CreateSession ", portal_that(deny, silent) },
        { "CreateSession BindShortcuts ", portal_that(agree, silent) },
        { "CreateSession BindShortcuts ", portal_that(agree, fail) },
        { "CreateSession BindShortcuts ", portal_that(agree, deny) },
        { "CreateSession BindShortcuts ", portal_that(nonsense, nonsense) },
    };
    for (const auto& row : rows) {
        auto service = std::make_unique<Service>(portal, row.answers);
        ask("GNOME");
        ASSERT_TRUE(QTest::qWaitFor([&] { return service->calls == row.calls; }, bound_ms));
        service.reset();
        service = std::make_unique<Service>(portal, portal_that(agree, agree));
        EXPECT_TRUE(is_told(" +0")) << row.calls << told;
    }
}

TEST_F(DesktopHotKeysTest, ArePressedAsKdeSaysAndGivenBackAtTheEnd)
{
    std::string asked;
    Service service(kde, [&](const QDBusMessage& call, const QDBusConnection& bus) {
        const auto action = call.arguments().value(0).toStringList();
        asked += " " + call.member().left(5).toStdString() + action.value(1).toStdString();
        if (call.member() != "setShortcutKeys")
            bus.send(call.createReply());
        else if (action.value(1) == "0")
            bus.send(call.createReply(call.arguments().value(1)));
        else
            bus.send(call.createReply("nonsense"));
    });
    ask("ubuntu:KDE");
    ASSERT_TRUE(is_told(" +0"));
    const auto press = [&](const QVariantList& arguments) {
        service.tell("/component/tessavox", "org.kde.kglobalaccel.Component",
            "globalShortcutPressed", arguments);
    };
    press({ "another", "0", 1ll });
    press({ "tessavox", "x", 1ll });
    press({ "tessavox", "0", 1ll });
    EXPECT_TRUE(is_told(" +0 0"));
    const auto change = [&](const char* id, int key) {
        service.tell("/kglobalaccel", "org.kde.KGlobalAccel", "yourShortcutsChanged",
            { QStringList{ "tessavox", id },
                QVariant::fromValue(KdeKeySequences{ KdeKeySequence{ { key } } }) });
    };
    change("99", 5);
    change("0", 0);
    change("1", 5);
    EXPECT_TRUE(is_told(" +0 0 -0 +1"));
    keys.reset();
    const std::string all = " doReg0 setSh0 setSh0 doReg1 setSh1 setSh1 setIn0 setIn1";
    EXPECT_TRUE(QTest::qWaitFor([&] { return asked == all; }, bound_ms)) << asked;
}

} // namespace
} // namespace tessavox
