#pragma once

#include <QDBusUnixFileDescriptor>
#include <QString>
#include <memory>
#include <string>

namespace OrvelSystem {

/// A request to logind not to do something. Destroying it withdraws the request, also before logind
/// has answered. Main thread only.
class LogindInhibitor {
  public:
    /// `what` and `mode` as logind names them, such as "sleep" and "delay". `reason` is shown to
    /// the user in the list of inhibitors.
    LogindInhibitor(const QString& what, const std::string& reason, const QString& mode);

    /// Whether logind has granted the request.
    bool isTaken() const { return lock_->isValid(); }

  private:
    // The inhibition lasts until the descriptor is closed. If the reply arrives after the
    // destruction of this object, the descriptor is closed with the reply.
    std::shared_ptr<QDBusUnixFileDescriptor> lock_ = std::make_shared<QDBusUnixFileDescriptor>();
};

}  // namespace OrvelSystem
