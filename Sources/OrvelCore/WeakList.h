#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace OrvelCore {

/// Keeps an observer, or another entry, registered until the last copy is destroyed. It may outlive
/// what it is registered with. Null for none.
using Subscription = std::shared_ptr<void>;

/// A list of entries, such as observers, that others own: an entry leaves the list when the last
/// pointer to it is destroyed. These pointers may outlive the list. Not thread-safe.
template <class T>
class WeakList {
  public:
    [[nodiscard]] std::shared_ptr<T> add(T entry) {
        auto owned = std::make_shared<T>(std::move(entry));
        add(owned);
        return owned;
    }
    void add(const std::shared_ptr<T>& entry) {
        std::erase_if(entries_, [](const auto& weak) { return weak.expired(); });
        entries_.push_back(entry);
    }

    /// Calls `visit` with each entry, oldest first. The call may add entries, which are not visited
    /// this time, and remove entries, the visited one included; a removed entry that has not been
    /// visited yet is left out. The call may also destroy the list.
    template <class Visit>
    void forEach(const Visit& visit) const {
        const auto entries = entries_;
        for (const auto& weak : entries) {
            if (const auto entry = weak.lock()) visit(std::as_const(*entry));
        }
    }

    template <class Predicate>
    bool any(const Predicate& predicate) const {
        return std::ranges::any_of(entries_, [&](const auto& weak) {
            const auto entry = weak.lock();
            return entry && predicate(std::as_const(*entry));
        });
    }

    bool isEmpty() const {
        return std::ranges::all_of(entries_, [](const auto& weak) { return weak.expired(); });
    }

  private:
    std::vector<std::weak_ptr<T>> entries_;
};

}  // namespace OrvelCore
