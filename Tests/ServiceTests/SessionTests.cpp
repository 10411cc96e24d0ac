#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include "OrvelSystem/DisplayAwake.h"
#include "OrvelSystem/Linux/DBusPropertyCache.h"
#include "OrvelSystem/MacOSLock.h"
#include "OrvelSystem/SessionEvents.h"

#include "Bus.h"

namespace {

class Session : public testing::Test {
  protected:
    void observe() {
        events.emplace();
        events->onMacOSLocked = [this] { log += 'L'; };
        events->onMacOSUnlocked = [this] { log += 'U'; };
        events->onMacOSLockUnknown = [this] { log += '?'; };
        events->onWake = [this] { log += 'W'; };
        events->onScreensChanged = [this] { log += 'S'; };
        // Send hints until one arrives, which shows that the session was found.
        EXPECT_TRUE(pumpedUntil([&] {
            logind->setLockedHint(!logind->lockedHint());
            return !log.empty();
        }));
        logind->setLockedHint(false);
        // Messages keep their order, so no earlier hint is pending after this call.
        QDBusConnection::systemBus().call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping")));
        QCoreApplication::processEvents();
        EXPECT_TRUE(log.ends_with('?')) << log;
        log.clear();
    }
    bool saw(const std::string& expected) {
        return pumpedUntil([&] { return log.size() >= expected.size(); }) && log == expected;
    }

    Bus& bus = Bus::shared();
    std::optional<Logind> logind{std::in_place, bus.connection(), bus.environment(),
                                 bus.log("logind")};
    std::optional<SessionEvents> events;
    std::string log;
};

TEST_F(Session, ReportsNoEndOfALockAsAnUnlock) {
    observe();
    logind->signalLock();
    logind->signalUnlock();
    EXPECT_TRUE(pumpedWhile([&] { return log.empty(); })) << "requests to lockers";
    logind->setLockedHint(true);
    EXPECT_TRUE(saw("L"));
    logind->signalUnlock();
    EXPECT_TRUE(pumpedWhile([&] { return log == "L"; })) << "the locker has not cleared its hint";
    // Any program can write the hint, make logind send the signal, and switch terminals.
    logind->setActive(false);
    logind->setActive(true);
    logind->setLockedHint(false);
    EXPECT_TRUE(saw("L?"));
}

TEST_F(Session, ReportsTheWakeAndNotTheSleep) {
    observe();
    logind->prepareForSleep(true);
    logind->prepareForSleep(false);
    EXPECT_TRUE(saw("W"));
    EXPECT_TRUE(pumpedWhile([&] { return log == "W"; }));
}

TEST_F(Session, ReportsALockThatWasThereBefore) {
    logind->setLockedHint(true);
    events.emplace();
    events->onMacOSLocked = [this] { log += 'L'; };
    EXPECT_TRUE(saw("L"));
}

TEST_F(Session, FindsLogindAgainAfterARestart) {
    observe();
    logind.reset();
    logind.emplace(bus.connection(), bus.environment(), bus.log("logind"));
    EXPECT_TRUE(pumpedUntil([&] {
        logind->setLockedHint(true);
        return log == "L";
    }));
    logind.reset();
    EXPECT_TRUE(saw("L?"));
}

TEST_F(Session, MacOSLockAsksLogindAndReadsItsHint) {
    EXPECT_TRUE(MacOSLock::isAvailable());
    EXPECT_FALSE(MacOSLock::isScreenLocked());
    EXPECT_TRUE(MacOSLock::engage());
    EXPECT_TRUE(pumpedUntil([&] { return logind->lockRequests() == 1; }));
    EXPECT_FALSE(MacOSLock::isScreenLocked()) << "a request is not a lock";
    logind->setLockedHint(true);
    EXPECT_TRUE(MacOSLock::isScreenLocked());
    logind.reset();
    EXPECT_FALSE(MacOSLock::isScreenLocked());
}

TEST_F(Session, DisplayAwakeInhibitsIdlenessAndLetsGo) {
    const auto inhibited = [&] { return logind->inhibitors() == std::vector<std::string>{"idle"}; };
    DisplayAwake awake("keeps displays awake while locked");
    awake.hold();
    EXPECT_TRUE(pumpedUntil([&] { return inhibited() && awake.isHeld(); }));
    awake.release();
    EXPECT_FALSE(awake.isHeld());
    EXPECT_TRUE(pumpedUntil([&] { return logind->inhibitors().empty(); }));

    // Released before the reply arrives.
    awake.hold();
    awake.release();
    EXPECT_TRUE(pumpedWhile([] { return true; }));
    EXPECT_TRUE(pumpedUntil([&] { return logind->inhibitors().empty(); }));

    // Refused first, then granted.
    logind.reset();
    awake.hold();
    EXPECT_TRUE(pumpedWhile([&] { return !awake.isHeld(); }));
    logind.emplace(bus.connection(), bus.environment(), bus.log("logind"));
    awake.hold();
    EXPECT_TRUE(pumpedUntil([&] { return inhibited() && awake.isHeld(); }));
}

/// Replies to `GetAll` with values that a signal has already replaced. A load of the machine gives
/// the same order with any service, because Qt delivers replies and signals on different paths.
class LateReply : public QDBusVirtualObject {
  public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const auto interface = message.arguments().value(0).toString();
        auto changed = QDBusMessage::createSignal(message.path(), message.interface(),
                                                  QStringLiteral("PropertiesChanged"));
        changed << interface << QVariantMap{{QStringLiteral("Locked"), true}} << QStringList();
        connection.send(changed);
        return connection.send(message.createReply(QVariantMap{
            {QStringLiteral("Locked"), false}, {QStringLiteral("Name"), QStringLiteral("one")}}));
    }
};

TEST(DBusPropertyCache, KeepsAChangeThatOvertakesAReply) {
    auto& bus = Bus::shared();
    const auto name = QStringLiteral("com.example.Late");
    auto service = QDBusConnection::connectToBus(
        QString::fromStdString(bus.environment().at("DBUS_SESSION_BUS_ADDRESS")), name);
    LateReply object;
    ASSERT_TRUE(service.registerVirtualObject(QStringLiteral("/"), &object));
    ASSERT_TRUE(service.registerService(name));
    const DBusPropertyCache cache(QDBusConnection::sessionBus(),
                                  {name, QStringLiteral("/"), QStringLiteral("com.example.Late")});
    EXPECT_TRUE(
        pumpedUntil([&] { return cache.value(QStringLiteral("Name")).toString() == "one"; }));
    EXPECT_TRUE(cache.value(QStringLiteral("Locked")).toBool());
    QDBusConnection::disconnectFromBus(name);
}

}  // namespace
