#include <QDBusConnection>
#include <QDBusVariant>

#include "OrvelModes/Blur/IdleController.h"
#include "OrvelModes/Feedback/LockFeedbackRunner.h"
#include "OrvelSystem/Announcer.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/ScreenReader.h"

#include "ModesDesktop.h"

namespace {

/// The service that reports whether a screen reader is on. It is a separate process because Qt also
/// makes a blocking call to it.
class AccessibilityStatus {
  public:
    explicit AccessibilityStatus(const Environment& environment)
        : process_({"python3", "-m", "dbusmock", "--session", "org.a11y.Bus", "/org/a11y/bus",
                    interface.toStdString()},
                   environment) {}

    bool isUp() {
        return tell("AddProperty", {interface, property, QVariant::fromValue(QDBusVariant(false))});
    }
    void set(bool enabled) {
        tell("UpdateProperties", {interface, QVariantMap{{property, enabled}}});
    }

  private:
    static bool tell(const char* method, const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall(
            QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
            QStringLiteral("org.freedesktop.DBus.Mock"), QString::fromLatin1(method));
        message.setArguments(arguments);
        return !DBus::failed(QDBusConnection::sessionBus().call(message));
    }

    const QString interface = QStringLiteral("org.a11y.Status");
    const QString property = QStringLiteral("ScreenReaderEnabled");
    Process process_;
};

struct SessionTest : ModesDesktopTest {
    IdleSources sources = IdleSources::live(loop);
};

TEST_F(SessionTest, FollowsWhetherTheSessionIsLockedOrAway) {
    EXPECT_FALSE(sources.sessionLocked());
    Logind logind(bus(), environment(), folder() / "logind.log");
    const auto isLocked = [&](bool locked) {
        return eventually([&] { return sources.sessionLocked() == locked; });
    };
    logind.setLockedHint(true);
    EXPECT_TRUE(isLocked(true));
    logind.setLockedHint(false);
    EXPECT_TRUE(isLocked(false));
    logind.setActive(false);
    EXPECT_TRUE(isLocked(true));
    logind.setActive(true);
    EXPECT_TRUE(isLocked(false));
    logind.setLockedHint(true);
    EXPECT_TRUE(isLocked(true));
    logind.stop();
    EXPECT_TRUE(isLocked(false));
}

TEST_F(SessionTest, AnnouncesOnlyWhileAScreenReaderIsOn) {
    const auto socket = (folder() / "speech").string();
    qputenv("SPEECHD_ADDRESS", QByteArray::fromStdString("unix_socket:" + socket));
    Announcer::announce("too early");
    AccessibilityStatus status(environment());
    ASSERT_TRUE(eventually([&] { return status.isUp(); }));
    EXPECT_FALSE(ScreenReader::isOn());
    status.set(true);
    ASSERT_TRUE(eventually([] { return ScreenReader::isOn(); }));
    // The announcement uses a thread, which ends if no service listens.
    const auto threads = [] {
        using Entries = std::filesystem::directory_iterator;
        return std::distance(Entries("/proc/self/task"), Entries());
    };
    const auto before = threads();
    Announcer::announce("to nobody");
    ASSERT_TRUE(eventually([&] { return threads() <= before; }));
    const Process speech({"python3", KARVO_SPEECH_SERVICE, socket, folder() / "said"},
                         environment());
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(socket); }));
    const auto isSaid = [&](const std::string& text) {
        return eventually([&] { return textOf(folder() / "said") == text; });
    };
    // Announcements use the same wording for Linux as everything on the screen.
    SoundPlayer sounds;
    const auto feedback = LockFeedbackRunner::Outputs::live(sounds);
    feedback.announce("Passwords are paused. Use Touch ID.");
    const std::string paused = "Passwords are paused. Use your fingerprint.\n";
    EXPECT_TRUE(isSaid(paused));
    feedback.announce("100 % wrong");
    EXPECT_TRUE(isSaid(paused + "100 % wrong\n"));
    status.set(false);
    EXPECT_TRUE(eventually([] { return !ScreenReader::isOn(); }));
    Announcer::announce("too late");
    EXPECT_TRUE(stays([&] { return textOf(folder() / "said").find("too") == std::string::npos; }));
}

}  // namespace
