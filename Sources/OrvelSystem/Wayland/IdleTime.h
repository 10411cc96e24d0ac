#pragma once

#include <optional>

#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Wayland/Compositor.h"

struct ext_idle_notification_v1;

namespace OrvelSystem {

/// The time since the last input, as the compositor reports it. A window that keeps the display
/// awake counts as input. Main thread only.
class IdleTime {
  public:
    /// Both must outlive this object.
    IdleTime(const Compositor& compositor, MainLoop& loop);
    ~IdleTime();
    IdleTime(const IdleTime&) = delete;
    IdleTime& operator=(const IdleTime&) = delete;

    /// In seconds. 0 below one second, and always 0 if the compositor does not report idle time.
    double seconds() const;

  private:
    MainLoop& loop_;
    ext_idle_notification_v1* notification_ = nullptr;
    std::optional<double> idleSince_;  // seconds of uptime
};

}  // namespace OrvelSystem
