#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "OrvelSystem/MainLoop.h"

/// A main loop whose clock advances only on request. Times are in seconds.
class ManualLoop final : public OrvelSystem::MainLoop {
  public:
    explicit ManualLoop(double start = 1000) : now_(start) {}

    void post(std::function<void()> f) override { posted_->add(std::move(f)); }
    Poster poster() override {
        return [posted = posted_](std::function<void()> f) { posted->add(std::move(f)); };
    }
    OrvelSystem::Timer after(double seconds, std::function<void()> f) override {
        return schedule(seconds < 0 ? 0 : seconds, 0, std::move(f));
    }
    OrvelSystem::Timer every(double interval, std::function<void()> f) override {
        return schedule(interval, interval, std::move(f));
    }
    double uptime() const override { return now_; }

    /// Runs all posted functions, including those that they post. No time passes.
    void drain() {
        for (;;) {
            const auto f = posted_->takeFirst();
            if (!f) return;
            f();
        }
    }

    /// Advances the clock, and stops at each due timer in order.
    void advance(double seconds) {
        drain();
        const double end = now_ + seconds;
        // A rounded sum of fractions such as 0.05 must not move a timer past the end.
        while (!timers_->empty() && timers_->begin()->first.first <= end + 1e-9) {
            const auto first = timers_->begin();
            const auto entry = first->second;
            now_ = std::max(now_, first->first.first);
            timers_->erase(first);
            if (entry->interval > 0) timers_->emplace(key(entry->interval, entry->id), entry);
            entry->f();
            drain();
        }
        now_ = std::max(now_, end);
    }

    /// The number of active timers; a program at rest should have none.
    std::size_t timerCount() const { return timers_->size(); }

  private:
    // Threads may outlive the loop and still post to this object.
    class Posted {
      public:
        void add(std::function<void()> f) {
            const std::lock_guard lock(mutex_);
            functions_.push_back(std::move(f));
        }
        // Null if there is none.
        std::function<void()> takeFirst() {
            const std::lock_guard lock(mutex_);
            if (functions_.empty()) return nullptr;
            auto f = std::move(functions_.front());
            functions_.pop_front();
            return f;
        }

      private:
        std::mutex mutex_;
        std::deque<std::function<void()>> functions_;
    };
    struct Entry {
        std::function<void()> f;
        double interval;
        std::uint64_t id;
    };
    using Key = std::pair<double, std::uint64_t>;
    using Timers = std::map<Key, std::shared_ptr<Entry>>;

    Key key(double seconds, std::uint64_t id) const { return {now_ + seconds, id}; }

    OrvelSystem::Timer schedule(double seconds, double interval, std::function<void()> f) {
        const auto id = nextID_++;
        timers_->emplace(key(seconds, id),
                         std::make_shared<Entry>(Entry{std::move(f), interval, id}));
        return OrvelSystem::Timer([id, weak = std::weak_ptr<Timers>(timers_)] {
            if (const auto timers = weak.lock())
                std::erase_if(*timers, [id](const auto& entry) { return entry.second->id == id; });
        });
    }

    double now_;
    std::uint64_t nextID_ = 1;
    std::shared_ptr<Timers> timers_ = std::make_shared<Timers>();
    std::shared_ptr<Posted> posted_ = std::make_shared<Posted>();
};
