#pragma once

#include <QDBusConnection>
#include <QVariantMap>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// A cache of an object's properties, so that reading one never blocks. It is filled at
/// construction and updated when the properties may have changed. It does not start the service.
/// Main thread only.
class FollowedProperties {
  public:
    FollowedProperties(QDBusConnection bus, DBus::Object object);

    /// Invalid until the first answer has arrived, and while the service is not running.
    QVariant value(const QString& name) const { return values_.value(name); }

  private:
    void read();

    QDBusConnection bus_;
    DBus::Object object_;
    QVariantMap values_;
    DBus::Subscription owner_;
    DBus::Subscription changes_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
