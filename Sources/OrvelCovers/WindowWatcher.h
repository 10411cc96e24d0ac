#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "OrvelCore/Geometry.h"

namespace OrvelCovers {

/// Notices, on a thread of its own, that the windows are no longer as they were published, and
/// that the mouse button or the Option key changed. At most one report is under way for each
/// published snapshot, however slow the receiver is; button and key are reported even so.
class WindowWatcher {
  public:
    /// What the receiver knows.
    struct Snapshot {
        /// All windows, front-most first.
        std::vector<std::int64_t> numbers;
        /// The bounds of those whose moves matter.
        std::map<std::int64_t, OrvelCore::Rect> covered;
        bool operator==(const Snapshot&) const = default;
    };

    /// Calls that any thread may make.
    struct Reads {
        std::function<std::vector<std::int64_t>()> numbers;
        std::function<std::map<std::int64_t, OrvelCore::Rect>(const std::vector<std::int64_t>&)>
            bounds;
        std::function<bool()> button;
        std::function<bool()> option;
        /// Where the platform tells of changes: calls back on any thread at each of them until the
        /// token is dropped. Without it the reads are polled at `pollInterval`.
        std::function<std::shared_ptr<void>(std::function<void()>)> observe;

        static Reads live();
    };

    /// Seconds between two looks where nobody tells of changes.
    static constexpr double pollInterval = 0.05;

    /// `onChange` is called on the watcher's thread.
    WindowWatcher(Reads reads, std::function<void()> onChange);
    ~WindowWatcher();
    WindowWatcher(const WindowWatcher&) = delete;
    WindowWatcher& operator=(const WindowWatcher&) = delete;

    /// `start` and `stop` are for one thread alone, `publish` for any.
    void start();
    /// Once it returns, there are no more reports.
    void stop();
    /// Says what is known now and asks for a report of the next change.
    void publish(Snapshot snapshot);
    /// A change was told: a look is due. For any thread.
    void tell();
    /// What the watcher's thread does once it is woken: takes the look that is due, if one is.
    bool lookIfDue();
    /// One look.
    void check();

  private:
    void run();
    void wake();
    void fire();

    Reads reads_;
    std::function<void()> onChange_;

    // What the two threads share. Never held across a read or a report.
    std::mutex lock_;
    std::optional<Snapshot> snapshot_;
    bool reported_ = false;  // since the snapshot was published
    bool told_ = false;      // of a change, since then
    bool lastButton_ = false;
    bool lastOption_ = false;

    std::mutex queueLock_;
    std::condition_variable queueWoken_;
    bool isDue_ = false;
    bool isStopping_ = false;
    std::shared_ptr<void> observation_;
    std::thread queue_;
};

}  // namespace OrvelCovers
