#pragma once

#include <QObject>
#include <memory>

#include "OrvelSystem/MainLoop.h"

namespace OrvelSystem {

/// The Qt event loop of the main thread, which must create this object. Requires a
/// `QCoreApplication`.
class QtMainLoop final : public MainLoop {
  public:
    QtMainLoop();
    ~QtMainLoop() override;

    void post(std::function<void()> f) override;
    Poster poster() override;
    Timer after(double seconds, std::function<void()> f) override;
    Timer every(double interval, std::function<void()> f) override;
    double uptime() const override;

  private:
    Timer start(double seconds, bool once, std::function<void()> f);

    struct Inbox;

    std::unique_ptr<QObject> context_;
    std::shared_ptr<Inbox> inbox_;
};

}  // namespace OrvelSystem
