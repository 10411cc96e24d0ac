#pragma once

#include "OrvelSystem/Task.h"

/// An operation that returns `answer` immediately or, if that is empty, waits for `arrive`.
template <class T>
class StubAnswer {
  public:
    explicit StubAnswer(std::optional<T> atOnce) : answer(std::move(atOnce)) {}

    std::optional<T> answer;

    Task<T> operator()() {
        if (answer) co_return *answer;
        Arrival<T> arrival;
        waiting_.push_back(arrival.promise());
        T value = co_await arrival;
        co_return value;
    }
    std::size_t waiting() const { return waiting_.size(); }
    /// Completes the oldest waiting call.
    void arrive(T value) {
        auto oldest = std::move(waiting_.front());
        waiting_.pop_front();
        oldest(std::move(value));
    }

  private:
    std::deque<std::function<void(T)>> waiting_;
};
