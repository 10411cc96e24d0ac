#pragma once

#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace OrvelSystem {

/// Tells work on another thread that it shall end. Copies refer to the same request. Any thread.
/// `std::stop_token` is not used because libc++ has it only as an experiment.
class StopToken {
  public:
    /// A token without a source is never asked to stop.
    StopToken() = default;

    bool isStopRequested() const;

  private:
    friend class StopSource;
    friend class StopCallback;

    struct State {
        std::mutex mutex;
        bool isRequested = false;
        std::list<std::function<void()>> callbacks;
    };
    explicit StopToken(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::shared_ptr<State> state_;
};

/// The side that asks for the stop. Any thread.
class StopSource {
  public:
    StopToken token() const { return StopToken(state_); }
    /// Calls the callbacks that are registered before it returns. Only the first call counts.
    void requestStop() const;

  private:
    std::shared_ptr<StopToken::State> state_ = std::make_shared<StopToken::State>();
};

/// Calls a function on the thread that requests the stop, or in the constructor when the stop has
/// been requested already. The destructor waits for a call that runs. The function must not throw,
/// and must neither request the stop nor make or drop a callback of the same source.
class StopCallback {
  public:
    StopCallback(const StopToken& token, std::function<void()> call);
    StopCallback(const StopCallback&) = delete;
    StopCallback& operator=(const StopCallback&) = delete;
    ~StopCallback();

  private:
    std::shared_ptr<StopToken::State> state_;
    std::list<std::function<void()>>::iterator position_;
};

}  // namespace OrvelSystem
