#pragma once

#include <QDBusConnection>
#include <QVariantMap>
#include <cstdint>
#include <functional>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// A cache of an object's properties, so that reading one never blocks. It is filled at
/// construction and updated when the properties may have changed. It does not start the service.
/// Main thread only.
class DBusPropertyCache {
  public:
    /// `changed` is called when values may have changed. It may destroy this object.
    DBusPropertyCache(
        QDBusConnection bus, DBus::Object object, std::function<void()> changed = [] {});
    DBusPropertyCache(const DBusPropertyCache&) = delete;
    DBusPropertyCache& operator=(const DBusPropertyCache&) = delete;

    /// Invalid until the first answer has arrived, and while the service is not running.
    QVariant value(const QString& name) const { return values_.value(name); }

  private:
    void read();
    void tellOfChange();

    QDBusConnection bus_;
    DBus::Object object_;
    std::function<void()> changed_;
    QVariantMap values_;
    QVariantMap changedDuringRead_;
    /// Only the reply to the newest read counts.
    std::uint64_t reads_ = 0;
    OrvelCore::Subscription owner_;
    OrvelCore::Subscription changes_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
