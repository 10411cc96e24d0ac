#pragma once

#include <optional>
#include <utility>

#include "OrvelSystem/Task.h"

namespace OrvelSystem {

struct Timeout {
    /// Returns the value of `operation`, or `nullopt` if `seconds` elapse first. The caller is
    /// resumed once. A late operation is not cancelled; its value is discarded. `seconds` must not
    /// be negative.
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
