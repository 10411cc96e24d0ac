// Detection of idle inhibitors for every interface that players and browsers use.
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>

#include <xcb/screensaver.h>

#include "OrvelModes/Blur/IdleController.h"
#include "OrvelSystem/X11/X11.h"

#include "ModesDesktop.h"

namespace {

/// A connection to the session bus under its own name, which closes with the object.
class Connection {
  public:
    explicit Connection(const char* name)
        : name_(QString::fromLatin1(name)),
          bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name_)) {}
    ~Connection() {
        bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name_);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

  private:
    QString name_;

  public:
    QDBusConnection bus;
};

/// A mock of a service that tells whether anything keeps the display awake.
class Service final : public QDBusVirtualObject {
  public:
    Service(const char* name, const char* path) : connection_(name), path_(QLatin1String(path)) {
        connection_.bus.registerVirtualObject(path_, this);
        connection_.bus.registerService(QLatin1String(name));
    }
    void set(bool inhibited, const char* interface, const char* signal, const QVariant& what) {
        inhibited_ = inhibited;
        auto message =
            QDBusMessage::createSignal(path_, QLatin1String(interface), QLatin1String(signal));
        connection_.bus.send(message << what);
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        // GNOME's session manager is asked about some kinds of inhibitors; 8 is idleness.
        const auto arguments = call.arguments();
        const bool counts = arguments.isEmpty() || (arguments.constFirst().toUInt() & 8) != 0;
        return bus.send(call.createReply(inhibited_ && counts));
    }

  private:
    Connection connection_;
    QString path_;
    bool inhibited_ = false;
};

class Player {
  public:
    /// Returns the cookie; empty if no service answers.
    std::optional<uint> inhibit(const char* path, const auto& eventually) {
        const auto call = ask(path, "Inhibit", {QStringLiteral("Player"), QStringLiteral("film")});
        if (!eventually([&] { return call.isFinished(); }) || call.isError()) return {};
        return call.reply().arguments().constFirst().toUInt();
    }
    void uninhibit(const char* path, uint cookie) { ask(path, "UnInhibit", {cookie}); }

  private:
    QDBusPendingCall ask(const char* path, const char* method, const QVariantList& arguments) {
        const QString saver = QStringLiteral("org.freedesktop.ScreenSaver");
        auto message = QDBusMessage::createMethodCall(saver, QString::fromLatin1(path), saver,
                                                      QString::fromLatin1(method));
        message.setArguments(arguments);
        return connection_.bus.asyncCall(message);
    }

    Connection connection_{"player"};
};

struct InhibitorTest : ModesDesktopTest {
    IdleSources sources = IdleSources::live(loop);

    bool isHeld(bool held) const {
        // Read both, as each tick of the idle timers does.
        const auto looks = [&] {
            (void)sources.idleSeconds();
            return sources.displayKeptAwake() == held;
        };
        return eventually(looks) && stays(looks);
    }
};

TEST_F(InhibitorTest, FollowsWhoKeepsTheDisplayAwake) {
    EXPECT_FALSE(sources.displayKeptAwake()) << "no service reports an inhibitor";
    Logind logind(bus(), environment(), folder() / "logind.log");
    EXPECT_TRUE(isHeld(false));
    const auto inhibit = [](const std::string& what) {
        return std::make_unique<Process>(
            Arguments{"systemd-inhibit", "--what=" + what, "--mode=block", "sleep", "1000"},
            environment());
    };
    auto other = inhibit("sleep");
    EXPECT_TRUE(eventually([&] { return logind.inhibitors().size() == 1; }));
    EXPECT_TRUE(isHeld(false));
    other = inhibit("sleep:idle");
    EXPECT_TRUE(isHeld(true));
    other.reset();
    EXPECT_TRUE(isHeld(false));
    {
        // The program's own inhibitor does not count.
        QDBusMessage ask = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
        ask << QStringLiteral("idle") << QStringLiteral("Karvo") << QStringLiteral("test")
            << QStringLiteral("block");
        const QDBusMessage held = QDBusConnection::systemBus().call(ask);
        EXPECT_TRUE(eventually([&] { return logind.inhibitors().size() == 1; }));
        EXPECT_TRUE(isHeld(false));
    }
    other = inhibit("idle");
    EXPECT_TRUE(isHeld(true));
    logind.stop();
    EXPECT_TRUE(isHeld(false)) << "a service that is gone holds nothing";
    {
        Service manager("org.gnome.SessionManager", "/org/gnome/SessionManager");
        EXPECT_TRUE(isHeld(false));
        for (const bool inhibited : {true, false, true}) {
            const QDBusObjectPath inhibitor(QStringLiteral("/org/gnome/SessionManager/Inhibitor1"));
            manager.set(inhibited, "org.gnome.SessionManager",
                        inhibited ? "InhibitorAdded" : "InhibitorRemoved",
                        QVariant::fromValue(inhibitor));
            EXPECT_TRUE(isHeld(inhibited));
        }
    }
    EXPECT_TRUE(isHeld(false));
}

TEST_F(InhibitorTest, FollowsThePowerManagerOfADesktopWithoutAnotherSource) {
    EXPECT_FALSE(sources.displayKeptAwake());
    {
        Service power("org.freedesktop.PowerManagement",
                      "/org/freedesktop/PowerManagement/Inhibit");
        const auto set = [&](bool inhibited) {
            power.set(inhibited, "org.freedesktop.PowerManagement.Inhibit", "HasInhibitChanged",
                      inhibited);
        };
        set(true);
        EXPECT_TRUE(isHeld(true));
        {
            // Plasma's agent distinguishes inhibitors of the screen from those of sleep.
            const Service agent("org.kde.Solid.PowerManagement.PolicyAgent",
                                "/org/kde/Solid/PowerManagement/PolicyAgent");
            EXPECT_TRUE(isHeld(false)) << "on this desktop the service reports inhibitors of sleep";
        }
        EXPECT_TRUE(isHeld(true));
        set(false);
        EXPECT_TRUE(isHeld(false));
        set(true);
        EXPECT_TRUE(isHeld(true));
    }
    EXPECT_TRUE(isHeld(false));
}

TEST_F(InhibitorTest, IsAskedByPlayersWhereTheSessionHasNoService) {
    EXPECT_FALSE(sources.displayKeptAwake());
    const auto patiently = [](const auto& holds) { return eventually(holds); };
    const auto inhibits = [&](Player& player, const char* path) {
        std::optional<uint> cookie;
        eventually([&] { return (cookie = player.inhibit(path, patiently)).has_value(); });
        return cookie.value_or(0);
    };
    constexpr auto path = "/org/freedesktop/ScreenSaver";
    constexpr auto otherPath = "/ScreenSaver";
    {
        Player player;
        const uint first = inhibits(player, path);
        const uint second = inhibits(player, otherPath);
        EXPECT_NE(first, second);
        player.uninhibit(path, first);
        EXPECT_TRUE(isHeld(true));
        player.uninhibit(path, second);
        EXPECT_TRUE(isHeld(false));
        inhibits(player, path);
        EXPECT_TRUE(isHeld(true));
    }
    EXPECT_TRUE(isHeld(false)) << "a player that has ended holds nothing";

    Player player;
    inhibits(player, path);
    EXPECT_TRUE(isHeld(true));
    const QString name = QStringLiteral("org.freedesktop.ScreenSaver");
    auto desktop = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    desktop.interface()->registerService(name, QDBusConnectionInterface::ReplaceExistingService);
    EXPECT_TRUE(isHeld(false)) << "the desktop's own service is asked from now on";
    desktop = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
    inhibits(player, path);
    EXPECT_TRUE(isHeld(true));
}

TEST_F(InhibitorTest, SeesWhoSuspendsTheScreenSaverOfTheServer) {
    EXPECT_FALSE(sources.displayKeptAwake());
    EXPECT_TRUE(isHeld(false));
    auto* const player = xcb_connect(nullptr, nullptr);
    const auto suspend = [player](bool suspends) {
        xcb_screensaver_suspend(player, suspends);
        xcb_flush(player);
    };
    xcb_discard_reply(player, xcb_screensaver_query_version(player, 1, 1).sequence);
    suspend(true);
    suspend(true);
    EXPECT_TRUE(isHeld(true));
    suspend(false);
    EXPECT_TRUE(isHeld(true)) << "each has to be taken back";
    suspend(false);
    EXPECT_TRUE(isHeld(false));
    suspend(true);
    EXPECT_TRUE(isHeld(true));
    xcb_disconnect(player);
    EXPECT_TRUE(isHeld(false));

    auto* const own = X11::shared().connection();
    xcb_screensaver_suspend(own, 1);
    xcb_flush(own);
    EXPECT_TRUE(isHeld(false)) << "the program's own";
    xcb_screensaver_suspend(own, 0);
}

}  // namespace
