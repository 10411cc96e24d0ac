#include "OrvelSystem/Linux/PortalSettings.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QStringList>

namespace OrvelSystem {

namespace {

const DBus::Object portal{QStringLiteral("org.freedesktop.portal.Desktop"),
                          QStringLiteral("/org/freedesktop/portal/desktop"),
                          QStringLiteral("org.freedesktop.portal.Settings")};

using Spaces = QMap<QString, QVariantMap>;

QStringList spacesInUse() {
    return {QStringLiteral("org.freedesktop.appearance"),
            QStringLiteral("org.gnome.desktop.interface"),
            QStringLiteral("org.gnome.desktop.sound")};
}

/// Older portals wrap a value in two variants.
QVariant unwrapped(const QVariant& value) {
    if (value.metaType() != QMetaType::fromType<QDBusVariant>()) return value;
    return unwrapped(value.value<QDBusVariant>().variant());
}

}  // namespace

PortalSettings& PortalSettings::shared() {
    static PortalSettings settings;
    return settings;
}

PortalSettings::PortalSettings() {
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    qDBusRegisterMetaType<Spaces>();
    changes_ = DBus::onSignal(
        bus, portal, QStringLiteral("SettingChanged"), [this](const QDBusMessage& message) {
            const auto arguments = message.arguments();
            if (arguments.size() != 3 || !spacesInUse().contains(arguments[0].toString())) return;
            values_[arguments[0].toString()][arguments[1].toString()] = unwrapped(arguments[2]);
            tellOfChange();
        });
    const auto ask = portal.method(QStringLiteral("ReadAll"), {spacesInUse()});
    DBus::call(bus, ask, [this](const QDBusMessage& reply) {
        if (DBus::failed(reply) || reply.arguments().isEmpty()) return;
        const auto all = qdbus_cast<Spaces>(reply.arguments().constFirst());
        for (auto space = all.begin(); space != all.end(); ++space) {
            for (auto entry = space->begin(); entry != space->end(); ++entry)
                values_[space.key()][entry.key()] = unwrapped(entry.value());
        }
        tellOfChange();
    });
}

void PortalSettings::tellOfChange() {
    observers_.forEach([](const auto& changed) { changed(); });
}

QVariant PortalSettings::value(const QString& space, const QString& key) const {
    return values_.value(space).value(key);
}

OrvelCore::Subscription PortalSettings::observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
}

}  // namespace OrvelSystem
