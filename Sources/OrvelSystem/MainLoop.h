#pragma once

#include <coroutine>
#include <functional>
#include <set>
#include <utility>

namespace OrvelSystem {

/// A pending call of a `MainLoop`. Dropping it cancels the call; `detach` lets it run unowned.
class [[nodiscard]] Timer {
  public:
    Timer() = default;
    explicit Timer(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Timer(Timer&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Timer& operator=(Timer&& other) noexcept {
        if (this != &other) {
            cancel();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    ~Timer() { cancel(); }

    /// Also true after a single call has run: a timer does not know that it fired.
    bool isSet() const { return static_cast<bool>(cancel_); }
    void cancel() {
        if (const auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }
    void detach() { cancel_ = nullptr; }

  private:
    std::function<void()> cancel_;
};

/// The program's one loop and its one clock. All but `post` are for the main thread.
class MainLoop {
  public:
    MainLoop() = default;
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;
    virtual ~MainLoop();

    /// Runs `f` on the main thread in a later turn of the loop, in order of posting.
    /// The one operation that any thread may call.
    virtual void post(std::function<void()> f) = 0;
    /// Posts as `post` does while the loop lives, and drops the function after that. For threads
    /// that may outlive the loop.
    using Poster = std::function<void(std::function<void()> f)>;
    virtual Poster poster() = 0;
    /// Runs `f` once, no earlier than `seconds` from now. Negative counts as 0.
    virtual Timer after(double seconds, std::function<void()> f) = 0;
    /// Runs `f` every `interval` seconds, first one interval from now. `interval` is above 0.
    virtual Timer every(double interval, std::function<void()> f) = 0;
    /// Seconds of the monotonic clock, which stands still while the machine sleeps.
    virtual double uptime() const = 0;

  private:
    friend struct SpawnedTask;
    // Tasks still suspended when the loop goes, so that their frames go with it.
    std::set<void*> spawned_;
};

}  // namespace OrvelSystem
