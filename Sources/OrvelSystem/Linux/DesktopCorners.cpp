#include "OrvelSystem/DesktopCorners.h"

#include <QLocale>

#include "OrvelSystem/Linux/PortalSettings.h"

namespace OrvelSystem {

std::set<OrvelCore::TriggerSettings::Corner> DesktopCorners::used() {
    using Corner = OrvelCore::TriggerSettings::Corner;
    // The setting is there for every desktop that has GNOME's schemas; only its own shell obeys.
    const auto desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    if (!desktops.contains(QStringLiteral("GNOME"))) return {};
    const auto enabled = PortalSettings::shared().value(
        QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-hot-corners"));
    if (enabled.typeId() != QMetaType::Bool || !enabled.toBool()) return {};
    return {QLocale().textDirection() == Qt::RightToLeft ? Corner::topRight : Corner::topLeft};
}

}  // namespace OrvelSystem
