#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <functional>

namespace OrvelUI {

/// Runs one animation at about 60 frames per second. No timer runs without an animation.
class FrameTimer final : public QObject {
  public:
    explicit FrameTimer(QObject* parent) : QObject(parent) {}

    /// Calls `frame` with the seconds since the start until it returns false or `stop` is called.
    /// Replaces a running animation.
    void start(std::function<bool(double seconds)> frame);
    void stop();
    bool isRunning() const { return timer_.isActive(); }

  protected:
    void timerEvent(QTimerEvent* event) override;

  private:
    std::function<bool(double)> frame_;
    QBasicTimer timer_;
    QElapsedTimer clock_;
};

}  // namespace OrvelUI
