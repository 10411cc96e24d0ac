#include "OrvelSystem/Linux/SessionState.h"

#include <QDBusObjectPath>
#include <utility>

#include "OrvelSystem/Linux/DBusPropertyCache.h"
#include "OrvelSystem/Linux/LoginSession.h"

namespace OrvelSystem {

const DBus::Object& SessionState::manager() {
    static const DBus::Object object{QStringLiteral("org.freedesktop.login1"),
                                     QStringLiteral("/org/freedesktop/login1"),
                                     QStringLiteral("org.freedesktop.login1.Manager")};
    return object;
}

SessionState::SessionState(std::function<void()> changed, std::function<void()> lockRequested)
    : changed_(std::move(changed)), lockRequested_(std::move(lockRequested)) {
    const auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    owner_ = DBus::onOwnerChanged(bus, manager().service, [this](bool present) {
        if (present && !properties_) findSession();
    });
    findSession();
}

SessionState::~SessionState() = default;

void SessionState::findSession() {
    const auto id = LoginSession::current();
    if (!id) return;
    const auto bus = QDBusConnection::systemBus();
    const auto ask = manager().method(QStringLiteral("GetSession"), {QString::fromStdString(*id)});
    DBus::call(bus, ask, lifetime_.guard([this, bus](const QDBusMessage& reply) {
        const auto path = reply.arguments().value(0).value<QDBusObjectPath>().path();
        if (DBus::failed(reply) || path.isEmpty()) return;
        const DBus::Object session{manager().service, path,
                                   QStringLiteral("org.freedesktop.login1.Session")};
        request_ = DBus::onSignal(bus, session, QStringLiteral("Lock"),
                                  [this](const QDBusMessage&) { lockRequested_(); });
        properties_ = std::make_unique<DBusPropertyCache>(bus, session, changed_);
    }));
}

bool SessionState::isLocked() const {
    return properties_ && properties_->value(QStringLiteral("LockedHint")).toBool();
}

bool SessionState::isLockedOrAway() const {
    if (!properties_) return false;
    const auto active = properties_->value(QStringLiteral("Active"));
    return isLocked() || (active.isValid() && !active.toBool());
}

}  // namespace OrvelSystem
