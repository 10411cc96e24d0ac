#pragma once

#include <optional>

#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Wayland/Compositor.h"

struct ext_idle_notification_v1;

namespace OrvelSystem {

/// How long nobody has touched the computer, as the compositor tells. A window that keeps the
/// display awake counts as touching it. Main thread only.
class IdleTime {
  public:
    /// Both outlive this object.
    IdleTime(const Compositor& compositor, MainLoop& loop);
    ~IdleTime();
    IdleTime(const IdleTime&) = delete;
    IdleTime& operator=(const IdleTime&) = delete;

    /// Exact from a second on, and 0 before. Always 0 where the compositor does not tell.
    double seconds() const;

  private:
    MainLoop& loop_;
    ext_idle_notification_v1* notification_ = nullptr;
    std::optional<double> idleSince_;  // seconds of uptime
};

}  // namespace OrvelSystem
