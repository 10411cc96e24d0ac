#include "OrvelSystem/Linux/SessionState.h"

#include <QDBusObjectPath>

#include "OrvelSystem/Linux/FollowedProperties.h"
#include "OrvelSystem/Linux/LoginSession.h"

namespace OrvelSystem {

namespace {

constexpr double patience = 5;  // seconds

const DBus::Object manager{QStringLiteral("org.freedesktop.login1"),
                           QStringLiteral("/org/freedesktop/login1"),
                           QStringLiteral("org.freedesktop.login1.Manager")};

}  // namespace

SessionState::SessionState() {
    const auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    owner_ = DBus::onOwnerChanged(bus, manager.service, [this](bool present) {
        if (present && !properties_) findSession();
    });
    findSession();
}

SessionState::~SessionState() = default;

void SessionState::findSession() {
    const auto id = LoginSession::current();
    if (!id) return;
    const auto bus = QDBusConnection::systemBus();
    const auto ask = manager.method(QStringLiteral("GetSession"), {QString::fromStdString(*id)});
    DBus::call(bus, ask, patience, lifetime_.guard([this, bus](const QDBusMessage& reply) {
        const auto path = reply.arguments().value(0).value<QDBusObjectPath>().path();
        if (DBus::failed(reply) || path.isEmpty()) return;
        properties_ = std::make_unique<FollowedProperties>(
            bus,
            DBus::Object{manager.service, path, QStringLiteral("org.freedesktop.login1.Session")});
    }));
}

bool SessionState::isLockedOrAway() const {
    if (!properties_) return false;
    const auto active = properties_->value(QStringLiteral("Active"));
    return properties_->value(QStringLiteral("LockedHint")).toBool() ||
           (active.isValid() && !active.toBool());
}

}  // namespace OrvelSystem
