#pragma once

#include <QDBusConnection>
#include <memory>

namespace OrvelSystem {

/// The service by which players and browsers hold off what happens to an idle session, for a
/// session that has none of its own: there they would find nobody to ask. A service of the desktop
/// may take the name over at any time. Main thread only.
class ScreenSaverService {
  public:
    /// Offers the service on `bus`, under its name as soon as no other program has it.
    explicit ScreenSaverService(const QDBusConnection& bus);
    ~ScreenSaverService();
    ScreenSaverService(const ScreenSaverService&) = delete;
    ScreenSaverService& operator=(const ScreenSaverService&) = delete;

    /// Whether another program that still runs holds at least one inhibition of this service.
    bool isInhibited() const;

  private:
    class Object;
    std::unique_ptr<Object> object_;
};

}  // namespace OrvelSystem
