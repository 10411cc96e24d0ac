#include "OrvelSystem/Qt/Appearance.h"

#include <QVariant>

#include "OrvelSystem/Linux/PortalSettings.h"

namespace OrvelSystem {

namespace {

const QString common = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");

// Values of the portal's enumerations.
constexpr uint preferDark = 1;
constexpr uint moreContrast = 1;
constexpr uint lessMotion = 1;

}  // namespace

struct Appearance::Reader {
    struct Values {
        bool dark = false;
        bool contrast = false;
        bool still = false;
        bool operator==(const Values&) const = default;
    };

    explicit Reader(Appearance& owner)
        : appearance(owner), values(read()), changes(PortalSettings::shared().observe([this] {
              if (const auto now = read(); now != std::exchange(values, now))
                  appearance.tellOfChange();
          })) {}

    static Values read() {
        const auto& settings = PortalSettings::shared();
        const auto is = [&](const char* key, uint wanted) {
            return settings.value(common, QLatin1String(key)).toUInt() == wanted;
        };
        const auto animations = settings.value(gnome, QStringLiteral("enable-animations"));
        const bool stillByGnome = animations.typeId() == QMetaType::Bool && !animations.toBool();
        return {.dark = is("color-scheme", preferDark),
                .contrast = is("contrast", moreContrast),
                .still = is("reduced-motion", lessMotion) || stillByGnome};
    }

    Appearance& appearance;
    Values values;
    OrvelCore::Subscription changes;
};

Appearance& Appearance::shared() {
    static Appearance appearance;
    return appearance;
}

Appearance::Appearance() : reader_(std::make_unique<Reader>(*this)) {}
Appearance::~Appearance() = default;

void Appearance::tellOfChange() {
    onChanged();
    observers_.forEach([](const auto& changed) { changed(); });
}

OrvelCore::Subscription Appearance::observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
}

bool Appearance::isDark() const {
    return reader_->values.dark;
}
bool Appearance::increasesContrast() const {
    return reader_->values.contrast;
}
bool Appearance::reducesMotion() const {
    return reader_->values.still;
}

}  // namespace OrvelSystem
