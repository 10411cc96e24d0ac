#include "OrvelSystem/ScreenReader.h"

#include "OrvelSystem/Linux/DBusPropertyCache.h"

namespace OrvelSystem {

bool ScreenReader::isOn() {
    static const DBusPropertyCache status(
        QDBusConnection::sessionBus(),
        {QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
         QStringLiteral("org.a11y.Status")});
    return status.value(QStringLiteral("ScreenReaderEnabled")).toBool();
}

}  // namespace OrvelSystem
