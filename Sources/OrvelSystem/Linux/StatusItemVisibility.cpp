#include "OrvelSystem/StatusItemVisibility.h"

#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

std::optional<bool> StatusItemVisibility::isShown(std::int64_t /*windowNumber*/) {
    constexpr int patience = 250;  // milliseconds
    const DBus::Object watcher{QStringLiteral("org.kde.StatusNotifierWatcher"),
                               QStringLiteral("/StatusNotifierWatcher"),
                               QStringLiteral("org.kde.StatusNotifierWatcher")};
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return {};
    auto get = watcher.get(QStringLiteral("IsStatusNotifierHostRegistered"));
    get.setAutoStartService(false);
    const auto reply = bus.call(get, QDBus::Block, patience);
    const auto shown = DBus::property(reply);
    if (shown.isValid()) return shown.toBool();
    // Nobody watches for items, so nobody draws them; a watcher that does not answer is a riddle.
    const bool absent =
        reply.errorName() == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner");
    return absent ? std::optional(false) : std::nullopt;
}

}  // namespace OrvelSystem
