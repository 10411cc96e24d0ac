#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WeakList.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelCovers {

/// Detects, on its own thread, that the windows differ from the published snapshot, or that the
/// mouse button or the Option key changed. Each published snapshot causes at most one report of
/// changed windows, however slow the receiver is; button and key are always reported.
class WindowWatcher {
  public:
    /// What the receiver knows.
    struct Snapshot {
        /// All windows, front-most first.
        std::vector<OrvelCore::WindowID> numbers;
        /// The bounds of the windows whose moves matter, in window-server coordinates.
        std::map<OrvelCore::WindowID, OrvelCore::Rect> covered;
        bool operator==(const Snapshot&) const = default;
    };

    /// Functions that may be called on any thread.
    struct Reads {
        std::function<std::vector<OrvelCore::WindowID>()> numbers;
        /// Bounds in window-server coordinates. Windows that no longer exist are missing.
        std::function<std::map<OrvelCore::WindowID, OrvelCore::Rect>(
            const std::vector<OrvelCore::WindowID>&)>
            bounds;
        std::function<bool()> button;
        std::function<bool()> option;
        /// Set where the platform reports changes: it calls back on any thread at each change until
        /// the token is destroyed. If empty, the reads are polled every `pollInterval`.
        std::function<OrvelCore::Subscription(std::function<void()>)> observe;

        static Reads live();
    };

    /// Seconds between two checks where the platform does not report changes.
    static constexpr double pollInterval = 0.05;

    /// `onChange` is called on the watcher's thread.
    WindowWatcher(Reads reads, std::function<void()> onChange);
    ~WindowWatcher();
    WindowWatcher(const WindowWatcher&) = delete;
    WindowWatcher& operator=(const WindowWatcher&) = delete;

    /// `start` and `stop` must be called on one thread, `publish` may be called on any.
    void start();
    /// No report is made after this returns.
    void stop();
    /// Sets what is known now and requests a report of the next change.
    void publish(Snapshot snapshot);
    /// Runs while the receiver runs, and publishes what it samples. `Receiver` is a controller with
    /// `onRunningChanged` and `onSampled`, which must not call them when this is gone.
    template <class Receiver>
    void follow(Receiver& receiver) {
        receiver.onRunningChanged = [this](bool isRunning) {
            if (isRunning)
                start();
            else
                stop();
        };
        receiver.onSampled = [this](Snapshot snapshot) { publish(std::move(snapshot)); };
    }
    /// Reports that something changed, so that a check is due. May be called on any thread.
    void tell();
    /// What the watcher's thread does when it is woken: performs the check if one is due. Returns
    /// whether it did.
    bool lookIfDue();
    /// Performs one check.
    void check();

  private:
    void run();
    void wake();
    void fire();

    Reads reads_;
    std::function<void()> onChange_;

    // Guards what the two threads share. Never held during a read or a report.
    std::mutex lock_;
    std::optional<Snapshot> snapshot_;
    bool reported_ = false;  // since the snapshot was published
    bool told_ = false;      // a change was reported since then
    bool lastButton_ = false;
    bool lastOption_ = false;

    std::mutex queueLock_;
    std::condition_variable queueWoken_;
    bool isDue_ = false;
    bool isStopping_ = false;
    OrvelCore::Subscription observation_;
    std::thread queue_;
};

}  // namespace OrvelCovers
