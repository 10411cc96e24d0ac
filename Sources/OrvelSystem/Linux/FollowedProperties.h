#pragma once

#include <QDBusConnection>
#include <QVariantMap>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// The properties of an object, known without waiting: read at first and whenever they may have
/// changed. Starts no service. Main thread only.
class FollowedProperties {
  public:
    FollowedProperties(QDBusConnection bus, DBus::Object object);

    /// Invalid until it is known, and without the service.
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
