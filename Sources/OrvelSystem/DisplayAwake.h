#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace OrvelSystem {

/// A request to the system to keep the displays on, until it goes.
class AwakeAssertion {
  public:
    virtual ~AwakeAssertion() = default;
    /// Whether the system has granted it; the answer may come later than the request.
    virtual bool isTaken() const = 0;
};

/// Keeps the displays from sleeping while it is held.
class DisplayAwake {
  public:
    using Take = std::function<std::unique_ptr<AwakeAssertion>(const std::string& reason)>;

    /// `reason` is for the lists in which systems show who keeps them awake.
    explicit DisplayAwake(std::string reason, Take take = takeFromSystem)
        : reason_(std::move(reason)), take_(std::move(take)) {}

    bool isHeld() const { return assertion_ && assertion_->isTaken(); }
    /// Nothing when held already; asks anew after a refusal.
    void hold();
    void release() { assertion_.reset(); }

  private:
    static std::unique_ptr<AwakeAssertion> takeFromSystem(const std::string& reason);

    std::string reason_;
    Take take_;
    std::unique_ptr<AwakeAssertion> assertion_;
};

}  // namespace OrvelSystem
