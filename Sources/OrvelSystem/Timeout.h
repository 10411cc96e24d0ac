#pragma once

#include <optional>
#include <utility>

#include "OrvelSystem/Task.h"

namespace OrvelSystem {

struct Timeout {
    /// The value of `operation`, or nothing when `seconds` ran out first. The caller is resumed
    /// once. An operation that is too late is not cancelled: its value is dropped.
    /// `seconds` is not negative.
    template <class T>
    static Task<std::optional<T>> run(MainLoop& loop, double seconds, Task<T> operation) {
        Arrival<std::optional<T>> first;
        spawn(loop, await(std::move(operation), first.promise()));
        const Timer sleeper = loop.after(seconds, [finish = first.promise()] { finish({}); });
        std::optional<T> result = co_await first;
        co_return result;
    }

  private:
    template <class T, class Finish>
    static Task<void> await(Task<T> operation, Finish finish) {
        T value = co_await operation;
        finish(std::optional<T>(std::move(value)));
    }
};

}  // namespace OrvelSystem
