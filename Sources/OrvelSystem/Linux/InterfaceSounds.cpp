#include "OrvelSystem/InterfaceSounds.h"

#include <cstdint>
#include <string>

#include "OrvelSystem/Linux/PortalSettings.h"

namespace OrvelSystem {

bool InterfaceSounds::enabled() {
    const auto wanted = PortalSettings::shared().value(QStringLiteral("org.gnome.desktop.sound"),
                                                       QStringLiteral("event-sounds"));
    if (wanted.typeId() != QMetaType::Bool) return enabled(std::nullopt);
    return enabled(PropertyValue::Dictionary{{std::string(key), std::int64_t{wanted.toBool()}}});
}

}  // namespace OrvelSystem
