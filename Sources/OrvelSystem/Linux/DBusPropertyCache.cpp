#include "OrvelSystem/Linux/DBusPropertyCache.h"

#include <QDBusArgument>
#include <utility>

namespace OrvelSystem {

DBusPropertyCache::DBusPropertyCache(QDBusConnection bus, DBus::Object object,
                                     std::function<void()> changed)
    : bus_(std::move(bus)), object_(std::move(object)), changed_(std::move(changed)) {
    if (!bus_.isConnected()) return;
    owner_ = DBus::onOwnerChanged(bus_, object_.service, [this](bool present) {
        values_.clear();
        if (present) return read();
        ++reads_;  // a reply of the former owner may still arrive
        tellOfChange();
    });
    const DBus::Object properties{object_.service, object_.path,
                                  QStringLiteral("org.freedesktop.DBus.Properties")};
    changes_ = DBus::onSignal(
        bus_, properties, QStringLiteral("PropertiesChanged"), [this](const QDBusMessage& message) {
            const auto arguments = message.arguments();
            if (arguments.size() < 3 || arguments[0].toString() != object_.interface) return;
            const auto changes = qdbus_cast<QVariantMap>(arguments[1]);
            values_.insert(changes);
            changedDuringRead_.insert(changes);
            if (!arguments[2].toStringList().isEmpty()) read();
            tellOfChange();
        });
    read();
}

void DBusPropertyCache::read() {
    const DBus::Object properties{object_.service, object_.path,
                                  QStringLiteral("org.freedesktop.DBus.Properties")};
    auto ask = properties.method(QStringLiteral("GetAll"), {object_.interface});
    ask.setAutoStartService(false);
    changedDuringRead_.clear();
    DBus::call(bus_, ask, lifetime_.guard([this, number = ++reads_](const QDBusMessage& reply) {
        if (number != reads_ || DBus::failed(reply) || reply.arguments().isEmpty()) return;
        values_ = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
        // Qt delivers a reply after signals that were sent later, so these values can be newer.
        values_.insert(changedDuringRead_);
        tellOfChange();
    }));
}

void DBusPropertyCache::tellOfChange() {
    const auto changed = changed_;
    changed();
}

}  // namespace OrvelSystem
