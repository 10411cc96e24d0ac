#include "OrvelSystem/Linux/Appearance.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>

#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

namespace {

const DBus::Object portal{QStringLiteral("org.freedesktop.portal.Desktop"),
                          QStringLiteral("/org/freedesktop/portal/desktop"),
                          QStringLiteral("org.freedesktop.portal.Settings")};
const QString common = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
constexpr double patience = 5;

// Values of the portal's own enumerations.
constexpr uint preferDark = 1;
constexpr uint moreContrast = 1;
constexpr uint lessMotion = 1;

using Namespaces = QMap<QString, QVariantMap>;

/// Older portals wrap a value twice.
QVariant unwrapped(const QVariant& value) {
    if (value.metaType() != QMetaType::fromType<QDBusVariant>()) return value;
    return unwrapped(value.value<QDBusVariant>().variant());
}

}  // namespace

struct Appearance::Reader {
    explicit Reader(Appearance& owner) : appearance(owner) {
        const auto bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) return;
        qDBusRegisterMetaType<Namespaces>();
        changes = DBus::onSignal(
            bus, portal, QStringLiteral("SettingChanged"), [this](const QDBusMessage& message) {
                const auto arguments = message.arguments();
                if (arguments.size() == 3)
                    take(arguments[0].toString(), arguments[1].toString(), unwrapped(arguments[2]));
            });
        const auto ask = portal.method(QStringLiteral("ReadAll"), {QStringList{common, gnome}});
        DBus::call(bus, ask, patience, [this](const QDBusMessage& reply) {
            if (DBus::failed(reply) || reply.arguments().isEmpty()) return;
            const auto all = qdbus_cast<Namespaces>(reply.arguments().constFirst());
            for (auto space = all.begin(); space != all.end(); ++space) {
                for (auto entry = space->begin(); entry != space->end(); ++entry)
                    take(space.key(), entry.key(), unwrapped(entry.value()));
            }
        });
    }

    void take(const QString& space, const QString& key, const QVariant& value) {
        if (space == common && key == QLatin1String("color-scheme"))
            set(dark, value.toUInt() == preferDark);
        else if (space == common && key == QLatin1String("contrast"))
            set(contrast, value.toUInt() == moreContrast);
        else if (space == common && key == QLatin1String("reduced-motion"))
            set(stillByPortal, value.toUInt() == lessMotion);
        else if (space == gnome && key == QLatin1String("enable-animations"))
            set(stillByGnome, value.typeId() == QMetaType::Bool && !value.toBool());
    }

    void set(bool& field, bool value) {
        if (field == value) return;
        field = value;
        appearance.tellOfChange();
    }

    Appearance& appearance;
    bool dark = false;
    bool contrast = false;
    bool stillByPortal = false;
    bool stillByGnome = false;
    DBus::Subscription changes;
};

Appearance& Appearance::shared() {
    static Appearance appearance;
    return appearance;
}

Appearance::Appearance() : reader_(std::make_unique<Reader>(*this)) {}
Appearance::~Appearance() = default;

void Appearance::tellOfChange() {
    onChanged();
    std::erase_if(observers_, [](const auto& weak) { return weak.expired(); });
    const auto observers = observers_;
    for (const auto& weak : observers) {
        if (const auto observer = weak.lock()) (*observer)();
    }
}

std::shared_ptr<void> Appearance::observe(std::function<void()> changed) {
    auto owned = std::make_shared<std::function<void()>>(std::move(changed));
    observers_.push_back(owned);
    return owned;
}

bool Appearance::isDark() const {
    return reader_->dark;
}
bool Appearance::increasesContrast() const {
    return reader_->contrast;
}
bool Appearance::reducesMotion() const {
    return reader_->stillByPortal || reader_->stillByGnome;
}

}  // namespace OrvelSystem
