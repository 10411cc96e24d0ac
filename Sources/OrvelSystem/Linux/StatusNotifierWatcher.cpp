#include "OrvelSystem/Linux/StatusNotifierWatcher.h"

#include <QDBusConnection>

namespace OrvelSystem {

namespace {

const DBus::Object watcher{QStringLiteral("org.kde.StatusNotifierWatcher"),
                           QStringLiteral("/StatusNotifierWatcher"),
                           QStringLiteral("org.kde.StatusNotifierWatcher")};

}  // namespace

StatusNotifierWatcher& StatusNotifierWatcher::shared() {
    static StatusNotifierWatcher shared;
    return shared;
}

StatusNotifierWatcher::StatusNotifierWatcher() {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        isHostRegistered_ = false;
        return;
    }
    owner_ = DBus::onOwnerChanged(bus, watcher.service, [this](bool present) {
        if (present)
            watcherAppeared();
        else
            set(false);
    });
    const auto ask = [this](const QDBusMessage&) { askForHost(); };
    hostCame_ = DBus::onSignal(bus, watcher, QStringLiteral("StatusNotifierHostRegistered"), ask);
    hostWent_ = DBus::onSignal(bus, watcher, QStringLiteral("StatusNotifierHostUnregistered"), ask);
    askForHost();
}

void StatusNotifierWatcher::watcherAppeared() {
    set(std::nullopt);
    items_.forEach([this](const QString& service) { send(service); });
    askForHost();
}

void StatusNotifierWatcher::askForHost() {
    auto get = watcher.get(QStringLiteral("IsStatusNotifierHostRegistered"));
    get.setAutoStartService(false);
    DBus::call(QDBusConnection::sessionBus(), get, [this](const QDBusMessage& reply) {
        const auto registered = DBus::property(reply);
        if (registered.isValid()) return set(registered.toBool());
        // Without a watcher, nothing draws status items. A watcher that does not answer leaves the
        // state unknown.
        const auto error = reply.errorName();
        if (error == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner") ||
            error == QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"))
            set(false);
    });
}

void StatusNotifierWatcher::set(std::optional<bool> isHostRegistered) {
    if (isHostRegistered == isHostRegistered_) return;
    isHostRegistered_ = isHostRegistered;
    observers_.forEach([](const auto& changed) { changed(); });
}

void StatusNotifierWatcher::send(const QString& service) const {
    auto call = watcher.method(QStringLiteral("RegisterStatusNotifierItem"), {service});
    call.setAutoStartService(false);
    DBus::call(QDBusConnection::sessionBus(), call, [](const QDBusMessage&) {});
}

OrvelCore::Subscription StatusNotifierWatcher::announce(const QString& service) {
    send(service);
    return items_.add(service);
}

OrvelCore::Subscription StatusNotifierWatcher::observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
}

}  // namespace OrvelSystem
