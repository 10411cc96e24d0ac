#pragma once

#include <QDBusConnection>
#include <memory>

namespace OrvelSystem {

/// The service through which players and browsers inhibit the actions of an idle session. It is for
/// sessions that do not provide it, where those programs would have no service to call. A service
/// of the desktop can take over the name at any time. Main thread only.
class ScreenSaverService {
  public:
    /// Offers the service on `bus`, under its name as soon as no other program owns that. Does not
    /// claim the name if the session can start such a service.
    explicit ScreenSaverService(const QDBusConnection& bus);
    ~ScreenSaverService();
    ScreenSaverService(const ScreenSaverService&) = delete;
    ScreenSaverService& operator=(const ScreenSaverService&) = delete;

    /// Whether another running program holds at least one inhibition of this service.
    bool isInhibited() const;

  private:
    class Object;
    std::unique_ptr<Object> object_;
};

}  // namespace OrvelSystem
