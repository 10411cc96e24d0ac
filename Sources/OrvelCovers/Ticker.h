#pragma once

#include <functional>

#include "OrvelSystem/MainLoop.h"

namespace OrvelCovers {

/// A repeating timer on the main thread.
class Ticker {
  public:
    Ticker() = default;
    Ticker(const Ticker&) = delete;
    Ticker& operator=(const Ticker&) = delete;
    virtual ~Ticker() = default;

    virtual bool isRunning() const = 0;
    /// In seconds. While stopped, the last interval; 0 before the first start.
    virtual double interval() const = 0;
    /// `interval` in seconds; the first call comes one interval from now. Restarts a running
    /// ticker.
    virtual void start(double interval, std::function<void()> tick) = 0;
    virtual void stop() = 0;
};

class TimerTicker final : public Ticker {
  public:
    explicit TimerTicker(OrvelSystem::MainLoop& loop) : loop_(loop) {}

    bool isRunning() const override { return timer_.isSet(); }
    double interval() const override { return interval_; }
    void start(double interval, std::function<void()> tick) override;
    void stop() override;

  private:
    OrvelSystem::MainLoop& loop_;
    OrvelSystem::Timer timer_;
    double interval_ = 0;
};

}  // namespace OrvelCovers
