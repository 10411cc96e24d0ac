#include "OrvelSystem/DesktopCorners.h"

#include <QLocale>

#include "OrvelSystem/Linux/PortalSettings.h"

namespace OrvelSystem {

std::set<OrvelCore::TriggerSettings::Corner> DesktopCorners::used() {
    using Corner = OrvelCore::TriggerSettings::Corner;
    // Every desktop that installs GNOME's schemas has this setting, but only GNOME Shell acts on
    // it.
    const auto desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    if (!desktops.contains(QStringLiteral("GNOME"))) return {};
    const auto enabled = PortalSettings::shared().value(
        QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-hot-corners"));
    if (enabled.typeId() != QMetaType::Bool || !enabled.toBool()) return {};
    return {QLocale().textDirection() == Qt::RightToLeft ? Corner::topRight : Corner::topLeft};
}

}  // namespace OrvelSystem
