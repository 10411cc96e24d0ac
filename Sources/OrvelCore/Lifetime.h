#pragma once

#include <memory>
#include <utility>

namespace OrvelCore {

/// Lets closures that outlive a call check whether their target still exists. The target owns one
/// as its last member, so that it is destroyed first. Main thread only.
class Lifetime {
  public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    /// Wraps `f` so that it does nothing after this object has been destroyed.
    template <class F>
    auto guard(F f) const {
        return [weak = std::weak_ptr<void>(token_), f = std::move(f)](auto&&... args) mutable {
            if (!weak.expired()) f(std::forward<decltype(args)>(args)...);
        };
    }

    std::weak_ptr<void> weak() const { return token_; }

  private:
    std::shared_ptr<void> token_ = std::make_shared<char>();
};

}  // namespace OrvelCore
