#pragma once

#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace OrvelSystem {

/// Tells work on another thread to stop. Copies refer to the same request. Any thread. We do not
/// use `std::stop_token` because libc++ supports it only experimentally.
class StopToken {
  public:
    /// A default-constructed token never reports a stop.
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

/// The side that requests the stop. Any thread.
class StopSource {
  public:
    StopToken token() const { return StopToken(state_); }
    /// Calls all registered callbacks before it returns. Later calls do nothing.
    void requestStop() const;

  private:
    std::shared_ptr<StopToken::State> state_ = std::make_shared<StopToken::State>();
};

/// Calls a function on the thread that requests the stop, or in the constructor if the stop was
/// requested before. The destructor waits for a call in progress. The function must not throw, and
/// must neither request the stop nor create or destroy a callback of the same source.
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
