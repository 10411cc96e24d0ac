#pragma once

#include <coroutine>
#include <functional>
#include <set>
#include <utility>

namespace OrvelSystem {

/// A pending call of a `MainLoop`. Destroying it cancels the call; `detach` keeps the call.
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

    /// Remains true after a single call has run: a timer does not know that it fired.
    bool isSet() const { return static_cast<bool>(cancel_); }
    void cancel() {
        if (const auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }
    void detach() { cancel_ = nullptr; }

  private:
    std::function<void()> cancel_;
};

/// The program's event loop and clock. All members but `post` are for the main thread only.
class MainLoop {
  public:
    MainLoop() = default;
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;
    virtual ~MainLoop();

    /// Runs `f` on the main thread in a later turn of the loop, in order of posting. Any thread.
    virtual void post(std::function<void()> f) = 0;
    /// Works like `post` while the loop exists, and discards the function after that. For threads
    /// that may outlive the loop.
    using Poster = std::function<void(std::function<void()> f)>;
    virtual Poster poster() = 0;
    /// Runs `f` once, at least `seconds` from now. A negative value counts as 0.
    virtual Timer after(double seconds, std::function<void()> f) = 0;
    /// Runs `f` every `interval` seconds, first one interval from now. `interval` must be positive.
    virtual Timer every(double interval, std::function<void()> f) = 0;
    /// Seconds on the monotonic clock, which does not advance while the machine is suspended.
    virtual double uptime() const = 0;

  private:
    friend struct SpawnedTask;
    // Frames of tasks that have not finished; the destructor destroys them.
    std::set<void*> spawned_;
};

}  // namespace OrvelSystem
