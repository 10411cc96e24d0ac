#include "OrvelSystem/SessionEvents.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QTimer>
#include <QVariantMap>
#include <optional>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/Linux/LoginSession.h"

namespace OrvelSystem {

namespace {

constexpr double patience = 5;       // seconds
constexpr int sampleInterval = 250;  // milliseconds

}  // namespace

// Whether the screen is locked is what lockers report to logind as the session's LockedHint, be
// it a desktop's own or one started by xss-lock. The session's Lock and Unlock signals are only
// requests to lockers, which need not be heard, so they count for nothing here.
class SessionEvents::Watch {
  public:
    explicit Watch(SessionEvents& owner) : owner_(owner) {
        QObject::connect(&sampler_, &QTimer::timeout, &sampler_, [this] { sample(); });
        sleep_ = DBus::onSignal(bus_, manager_, QStringLiteral("PrepareForSleep"),
                                [this](const QDBusMessage& message) {
                                    const auto starting = message.arguments().value(0);
                                    if (!starting.toBool()) owner_.onWake();
                                });
        restart_ = DBus::onOwnerChanged(bus_, manager_.service, [this](bool present) {
            if (present)
                findSession();
            else
                lost();
        });
        findSession();
    }

  private:
    void findSession() {
        const auto id = LoginSession::current();
        if (!id) return;
        DBus::call(bus_,
                   manager_.method(QStringLiteral("GetSession"), {QString::fromStdString(*id)}),
                   patience, lifetime_.guard([this](const QDBusMessage& reply) {
                       if (DBus::failed(reply)) return;
                       observe(reply.arguments().value(0).value<QDBusObjectPath>().path());
                   }));
    }

    void observe(const QString& path) {
        if (path.isEmpty()) return;
        session_.path = path;
        const DBus::Object properties{session_.service, path,
                                      QStringLiteral("org.freedesktop.DBus.Properties")};
        changes_ = DBus::onSignal(
            bus_, properties, QStringLiteral("PropertiesChanged"),
            [this](const QDBusMessage& message) { propertiesChanged(message.arguments()); });
        readHint();
    }

    void readHint() {
        DBus::call(bus_, session_.get(QStringLiteral("LockedHint")), patience,
                   lifetime_.guard([this](const QDBusMessage& reply) {
                       const auto value = DBus::property(reply);
                       if (value.isValid()) hinted(value.toBool());
                   }));
    }

    void propertiesChanged(const QVariantList& arguments) {
        const auto hint = QStringLiteral("LockedHint");
        if (arguments.size() < 3 || arguments[0].toString() != session_.interface) return;
        const auto changed = qdbus_cast<QVariantMap>(arguments[1]);
        // Another session was on the screen, a greeter for one: it had keys of its own.
        const auto active = changed.value(QStringLiteral("Active"));
        if (active.isValid() && !active.toBool()) lockerHadKeys_ = true;
        if (changed.contains(hint)) {
            hinted(changed.value(hint).toBool());
        } else if (arguments[2].toStringList().contains(hint)) {
            readHint();
        }
    }

    void hinted(bool locked) {
        if (locked == locked_) return;
        locked_ = locked;
        if (locked) {
            lockerHadKeys_ = false;
            sample();
            sampler_.start(sampleInterval);
            owner_.onMacOSLocked();
        } else {
            sample();
            sampler_.stop();
            if (lockerHadKeys_) owner_.onMacOSUnlocked();
        }
    }

    void lost() {
        if (!locked_) return;
        locked_ = false;
        sampler_.stop();
        owner_.onMacOSLockUnknown();
    }

    void sample() {
        if (!bus_.isConnected()) return lost();
        if (!owner_.holdsKeyboard()) lockerHadKeys_ = true;
    }

    SessionEvents& owner_;
    QDBusConnection bus_ = QDBusConnection::systemBus();
    const DBus::Object manager_{QStringLiteral("org.freedesktop.login1"),
                                QStringLiteral("/org/freedesktop/login1"),
                                QStringLiteral("org.freedesktop.login1.Manager")};
    DBus::Object session_{manager_.service, {}, QStringLiteral("org.freedesktop.login1.Session")};
    bool locked_ = false;
    bool lockerHadKeys_ = false;
    QTimer sampler_;
    DBus::Subscription sleep_;
    DBus::Subscription restart_;
    DBus::Subscription changes_;
    OrvelCore::Lifetime lifetime_;
};

SessionEvents::SessionEvents() : watch_(std::make_unique<Watch>(*this)) {}

SessionEvents::~SessionEvents() = default;

void SessionEvents::screensChanged() {
    if (watch_) onScreensChanged();
}

void SessionEvents::stop() {
    watch_.reset();
}

}  // namespace OrvelSystem
