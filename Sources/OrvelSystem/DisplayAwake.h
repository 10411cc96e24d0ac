#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace OrvelSystem {

/// A request to the system to keep the displays on. Destroying it withdraws the request.
class AwakeAssertion {
  public:
    virtual ~AwakeAssertion() = default;
    /// Whether the system has granted the request; its answer may arrive after the constructor
    /// returns.
    virtual bool isTaken() const = 0;
};

/// Keeps the displays from sleeping between `hold` and `release`.
class DisplayAwake {
  public:
    using Take = std::function<std::unique_ptr<AwakeAssertion>(const std::string& reason)>;

    /// Systems show `reason` to the user in the list of programs that keep the displays on.
    explicit DisplayAwake(std::string reason, Take take = takeFromSystem)
        : reason_(std::move(reason)), take_(std::move(take)) {}

    bool isHeld() const { return assertion_ && assertion_->isTaken(); }
    /// Does nothing if the request is already granted; repeats it after a refusal.
    void hold();
    void release() { assertion_.reset(); }

  private:
    static std::unique_ptr<AwakeAssertion> takeFromSystem(const std::string& reason);

    std::string reason_;
    Take take_;
    std::unique_ptr<AwakeAssertion> assertion_;
};

}  // namespace OrvelSystem
