#include "OrvelSystem/SessionEvents.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QVariantMap>
#include <optional>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/Linux/LoginSession.h"

namespace OrvelSystem {

namespace {

constexpr double replyTimeout = 5;  // seconds

}  // namespace

// Lockers set the LockedHint of the logind session while the screen is locked. When the hint is
// cleared, that proves nothing: any program of the session can write it, and it is also cleared
// when a locker crashes, gives up or fails to start. The session's Unlock signal proves no more,
// since any program of the user can make logind send it. So the end of a lock is always reported as
// unproven.
class SessionEvents::Watch {
  public:
    explicit Watch(SessionEvents& owner) : owner_(owner) {
        sleep_ = DBus::onSignal(bus_, manager_, QStringLiteral("PrepareForSleep"),
                                [this](const QDBusMessage& message) {
                                    const auto starting = message.arguments().value(0);
                                    if (starting.toBool())
                                        owner_.onSleep();
                                    else
                                        owner_.onWake();
                                });
        restart_ = DBus::onOwnerChanged(bus_, manager_.service, [this](bool present) {
            if (present)
                findSession();
            else
                hinted(false);
        });
        findSession();
    }

  private:
    void findSession() {
        const auto id = LoginSession::current();
        if (!id) return;
        DBus::call(bus_,
                   manager_.method(QStringLiteral("GetSession"), {QString::fromStdString(*id)}),
                   replyTimeout, lifetime_.guard([this](const QDBusMessage& reply) {
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
        request_ = DBus::onSignal(bus_, session_, QStringLiteral("Lock"),
                                  [this](const QDBusMessage&) { owner_.onLockRequested(); });
        readHint();
    }

    void readHint() {
        DBus::call(bus_, session_.get(QStringLiteral("LockedHint")), replyTimeout,
                   lifetime_.guard([this](const QDBusMessage& reply) {
                       const auto value = DBus::property(reply);
                       if (value.isValid()) hinted(value.toBool());
                   }));
    }

    void propertiesChanged(const QVariantList& arguments) {
        const auto hint = QStringLiteral("LockedHint");
        if (arguments.size() < 3 || arguments[0].toString() != session_.interface) return;
        const auto changed = qdbus_cast<QVariantMap>(arguments[1]);
        if (changed.contains(hint)) {
            hinted(changed.value(hint).toBool());
        } else if (arguments[2].toStringList().contains(hint)) {
            readHint();
        }
    }

    void hinted(bool locked) {
        if (locked == locked_) return;
        locked_ = locked;
        if (locked)
            owner_.onMacOSLocked();
        else
            owner_.onMacOSLockUnknown();
    }

    SessionEvents& owner_;
    QDBusConnection bus_ = QDBusConnection::systemBus();
    const DBus::Object manager_{QStringLiteral("org.freedesktop.login1"),
                                QStringLiteral("/org/freedesktop/login1"),
                                QStringLiteral("org.freedesktop.login1.Manager")};
    DBus::Object session_{manager_.service, {}, QStringLiteral("org.freedesktop.login1.Session")};
    bool locked_ = false;
    DBus::Subscription sleep_;
    DBus::Subscription restart_;
    DBus::Subscription changes_;
    DBus::Subscription request_;
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
