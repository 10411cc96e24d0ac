#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace OrvelCore {

/// Keeps an observer registered for as long as it lives; empty when default-made.
/// May outlive the field it observes.
class [[nodiscard]] Observation {
  public:
    Observation() = default;
    explicit Observation(std::shared_ptr<void> token) : token_(std::move(token)) {}

  private:
    std::shared_ptr<void> token_;
};

/// One observable field of a model. Writing an equal value is dropped without a call.
/// Main thread only; an observer may write the field or end observations, its own included.
template <class T>
class Observed {
  public:
    using Observer = std::function<void(const T&)>;

    Observed() = default;
    explicit Observed(T value) : value_(std::move(value)) {}
    Observed(const Observed&) = delete;
    Observed& operator=(const Observed&) = delete;

    const T& get() const { return value_; }

    /// Stores the value and then tells every observer. False when the value was equal already.
    bool set(T value) {
        if (value == value_) return false;
        value_ = std::move(value);
        std::erase_if(observers_, [](const auto& weak) { return weak.expired(); });
        const auto observers = observers_;
        for (const auto& weak : observers) {
            const auto entry = weak.lock();
            if (entry && !entry->isOver) entry->observer(value_);
        }
        return true;
    }

    Observation observe(Observer observer) {
        auto entry = std::make_shared<Entry>(Entry{std::move(observer)});
        observers_.push_back(entry);
        // One that ends itself lives on until its call returns, but is not called again.
        return Observation(
            std::shared_ptr<void>(nullptr, [entry](void*) { entry->isOver = true; }));
    }

  private:
    struct Entry {
        Observer observer;
        bool isOver = false;
    };

    T value_{};
    std::vector<std::weak_ptr<Entry>> observers_;
};

}  // namespace OrvelCore
