#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "OrvelCore/WeakList.h"

namespace OrvelCore {

/// An observable field of a model. Setting an equal value does not call the observers. Main thread
/// only. An observer may set the field and end subscriptions, including its own.
template <class T>
class Observed {
  public:
    using Observer = std::function<void(const T&)>;

    Observed() = default;
    explicit Observed(T value) : value_(std::move(value)) {}
    Observed(const Observed&) = delete;
    Observed& operator=(const Observed&) = delete;

    const T& get() const { return value_; }

    /// Stores the value, then calls every observer. Returns false if the value was already equal.
    bool set(T value) {
        if (value == value_) return false;
        value_ = std::move(value);
        observers_.forEach([this](const Entry& entry) {
            if (!entry.isOver) entry.observer(value_);
        });
        return true;
    }

    [[nodiscard]] Subscription observe(Observer observer) {
        auto entry = observers_.add(Entry{std::move(observer)});
        // An observer that ends its own subscription exists until its call returns, but is not
        // called again.
        return {entry.get(), [entry](void*) { entry->isOver = true; }};
    }

  private:
    struct Entry {
        Observer observer;
        bool isOver = false;
    };

    T value_{};
    WeakList<Entry> observers_;
};

}  // namespace OrvelCore
