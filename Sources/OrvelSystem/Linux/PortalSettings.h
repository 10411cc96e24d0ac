#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// A cache of the desktop's settings that the desktop portal provides to every program. It is
/// updated by signals and never blocks. Main thread only.
class PortalSettings {
  public:
    static PortalSettings& shared();

    /// Invalid until the first answer has arrived, and if the portal has no such setting.
    QVariant value(const QString& space, const QString& key) const;
    /// Calls `changed` after each change until the token is destroyed.
    [[nodiscard]] OrvelCore::Subscription observe(std::function<void()> changed);

  private:
    PortalSettings();
    void tellOfChange();

    QMap<QString, QVariantMap> values_;
    OrvelCore::WeakList<std::function<void()>> observers_;
    OrvelCore::Subscription changes_;
};

}  // namespace OrvelSystem
