#pragma once

#include <memory>

#include "OrvelSystem/MainLoop.h"

namespace OrvelSystem {

/// The main run loop. Calls are posted to the main queue and timers run in the common modes, so
/// both continue while a menu is open.
class DispatchMainLoop final : public MainLoop {
  public:
    DispatchMainLoop();
    ~DispatchMainLoop() override;

    void post(std::function<void()> f) override;
    Poster poster() override;
    Timer after(double seconds, std::function<void()> f) override;
    Timer every(double interval, std::function<void()> f) override;
    double uptime() const override;

  private:
    /// Tells posted calls, which run on the main thread, whether the loop still exists.
    std::shared_ptr<bool> isAlive_;
};

}  // namespace OrvelSystem
