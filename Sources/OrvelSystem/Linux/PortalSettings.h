#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <functional>
#include <list>
#include <memory>

#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// The desktop's settings as its portal gives them to any program, followed live without waiting.
/// Main thread only.
class PortalSettings {
  public:
    static PortalSettings& shared();

    /// Invalid until it is known, and where the portal has no such setting.
    QVariant value(const QString& space, const QString& key) const;
    /// `changed` hears of each change until the token is dropped.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

  private:
    PortalSettings();
    void tellOfChange();

    QMap<QString, QVariantMap> values_;
    std::list<std::weak_ptr<std::function<void()>>> observers_;
    DBus::Subscription changes_;
};

}  // namespace OrvelSystem
