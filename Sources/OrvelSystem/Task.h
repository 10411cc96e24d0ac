#pragma once

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "OrvelSystem/MainLoop.h"

namespace OrvelSystem {

template <class T>
class Task;

struct TaskPromiseBase {
    std::coroutine_handle<> continuation = std::noop_coroutine();

    struct FinalAwaiter {
        bool await_ready() const noexcept { return false; }
        template <class Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> done) const noexcept {
            return done.promise().continuation;
        }
        void await_resume() const noexcept {}
    };

    std::suspend_always initial_suspend() const noexcept { return {}; }
    FinalAwaiter final_suspend() const noexcept { return {}; }
    // Nothing in the program throws on purpose. Terminating is safe, since the guard takes over;
    // continuing with half a lock is not.
    [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
};

template <class T>
struct TaskPromise : TaskPromiseBase {
    std::optional<T> value;
    Task<T> get_return_object();
    void return_value(T result) { value.emplace(std::move(result)); }
    T take() { return std::move(*value); }
};

template <>
struct TaskPromise<void> : TaskPromiseBase {
    Task<void> get_return_object();
    void return_void() const noexcept {}
    void take() const noexcept {}
};

/// A coroutine on the main thread. It starts when it is awaited, and resumes its awaiter when it
/// returns. Destroying an unfinished task destroys its frame and the tasks that it awaits.
template <class T>
class [[nodiscard]] Task {
  public:
    using promise_type = TaskPromise<T>;

    explicit Task(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
    Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Task& operator=(Task&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Task() {
        if (handle_) handle_.destroy();
    }

    bool await_ready() const noexcept { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> awaiter) noexcept {
        handle_.promise().continuation = awaiter;
        return handle_;
    }
    T await_resume() { return handle_.promise().take(); }

  private:
    std::coroutine_handle<promise_type> handle_;
};

template <class T>
Task<T> TaskPromise<T>::get_return_object() {
    return Task<T>(std::coroutine_handle<TaskPromise<T>>::from_promise(*this));
}
inline Task<void> TaskPromise<void>::get_return_object() {
    return Task<void>(std::coroutine_handle<TaskPromise<void>>::from_promise(*this));
}

/// The root of a spawned task. The loop owns its frame until it has finished.
struct SpawnedTask {
    struct promise_type {
        MainLoop& loop;
        promise_type(MainLoop& owner, Task<void>&) : loop(owner) {}
        promise_type(const promise_type&) = delete;
        promise_type& operator=(const promise_type&) = delete;
        ~promise_type() {
            loop.spawned_.erase(std::coroutine_handle<promise_type>::from_promise(*this).address());
        }
        SpawnedTask get_return_object() {
            return {std::coroutine_handle<promise_type>::from_promise(*this)};
        }
        std::suspend_always initial_suspend() const noexcept { return {}; }
        std::suspend_never final_suspend() const noexcept { return {}; }
        [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
        void return_void() const noexcept {}
    };
    std::coroutine_handle<promise_type> handle;

    static SpawnedTask root(MainLoop&, Task<void> task) { co_await task; }
    static void start(MainLoop& loop, Task<void> task) {
        const auto handle = root(loop, std::move(task)).handle;
        loop.spawned_.insert(handle.address());
        loop.post([handle] { handle.resume(); });
    }
};

/// Starts a task in a later turn of the loop, never inside the call, so that the caller finishes
/// its own steps first. Tasks start in the order of spawning.
inline void spawn(MainLoop& loop, Task<void> task) {
    SpawnedTask::start(loop, std::move(task));
}

/// Suspends a task: `co_await Sleep(loop, seconds)`.
class Sleep {
  public:
    Sleep(MainLoop& loop, double seconds) : loop_(loop), seconds_(seconds) {}
    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> awaiter) {
        timer_ = loop_.after(seconds_, [awaiter] { awaiter.resume(); });
    }
    void await_resume() const noexcept {}

  private:
    MainLoop& loop_;
    double seconds_;
    Timer timer_;
};

/// A value that arrives later, through a callback, for one awaiting task. `promise()` returns the
/// callback. Its first call stores the value and resumes the awaiter inside the call; later calls
/// do nothing, and neither does a call after the awaiting task and the `Arrival` have been
/// destroyed. Main thread only.
template <class T>
class Arrival {
  public:
    auto promise() const {
        return [weak = std::weak_ptr<State>(state_)](T value) {
            const auto state = weak.lock();
            if (!state || state->value) return;
            state->value.emplace(std::move(value));
            if (const auto awaiter = std::exchange(state->awaiter, nullptr)) awaiter.resume();
        };
    }

    auto operator co_await() const noexcept { return Awaiter{state_}; }

  private:
    struct State {
        std::optional<T> value;
        std::coroutine_handle<> awaiter;
    };
    // The awaiting task may be destroyed before the `Arrival`, so its awaiter clears the handle.
    struct Awaiter {
        explicit Awaiter(std::shared_ptr<State> of) noexcept : state(std::move(of)) {}
        Awaiter(const Awaiter&) = delete;
        Awaiter& operator=(const Awaiter&) = delete;
        ~Awaiter() { state->awaiter = nullptr; }
        bool await_ready() const noexcept { return state->value.has_value(); }
        void await_suspend(std::coroutine_handle<> task) noexcept { state->awaiter = task; }
        T await_resume() { return std::move(*state->value); }

        std::shared_ptr<State> state;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// A shared flag with which the starter of a task asks it to stop. The task must poll it.
class Cancellation {
  public:
    void cancel() const { *flag_ = true; }
    bool isCancelled() const { return *flag_; }

  private:
    std::shared_ptr<bool> flag_ = std::make_shared<bool>(false);
};

}  // namespace OrvelSystem
