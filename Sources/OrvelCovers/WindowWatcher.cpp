#include "OrvelCovers/WindowWatcher.h"

#include <chrono>
#include <string>
#include <utility>

#include "OrvelCore/Brand.h"
#include "OrvelSystem/CurrentThread.h"

namespace OrvelCovers {

WindowWatcher::WindowWatcher(Reads reads, std::function<void()> onChange)
    : reads_(std::move(reads)), onChange_(std::move(onChange)) {}

WindowWatcher::~WindowWatcher() {
    stop();
}

void WindowWatcher::start() {
    if (queue_.joinable()) return;
    isStopping_ = false;
    isDue_ = true;
    queue_ = std::thread([this] { run(); });
    if (reads_.observe) observation_ = reads_.observe([this] { tell(); });
}

void WindowWatcher::stop() {
    if (!queue_.joinable()) return;
    observation_.reset();
    {
        const std::lock_guard guard(queueLock_);
        isStopping_ = true;
    }
    queueWoken_.notify_one();
    queue_.join();
}

void WindowWatcher::publish(Snapshot snapshot) {
    bool wasTold = false;
    {
        const std::lock_guard guard(lock_);
        snapshot_ = std::move(snapshot);
        reported_ = false;
        wasTold = std::exchange(told_, false);
    }
    // The change may be newer than the snapshot, and its check may have come too early or not at
    // all.
    if (wasTold) wake();
}

void WindowWatcher::tell() {
    {
        const std::lock_guard guard(lock_);
        told_ = true;
    }
    wake();
}

void WindowWatcher::check() {
    const bool button = reads_.button();
    const bool option = reads_.option();
    std::optional<Snapshot> known;
    bool inputsChanged = false;
    {
        const std::lock_guard guard(lock_);
        inputsChanged = button != lastButton_ || option != lastOption_;
        lastButton_ = button;
        lastOption_ = option;
        if (!inputsChanged && !reported_) known = snapshot_;
    }
    // A press may start a drag and Option a peek; both require the receiver to sample more often.
    if (inputsChanged) return fire();
    if (!known) return;
    if (reads_.numbers() != known->numbers) return fire();
    if (known->covered.empty()) return;
    std::vector<OrvelCore::WindowID> numbers;
    numbers.reserve(known->covered.size());
    for (const auto& [number, bounds] : known->covered) numbers.push_back(number);
    if (reads_.bounds(numbers) != known->covered) fire();
}

void WindowWatcher::fire() {
    {
        const std::lock_guard guard(lock_);
        reported_ = true;
    }
    onChange_();
}

void WindowWatcher::wake() {
    {
        const std::lock_guard guard(queueLock_);
        isDue_ = true;
    }
    queueWoken_.notify_one();
}

bool WindowWatcher::lookIfDue() {
    {
        const std::lock_guard guard(queueLock_);
        if (!std::exchange(isDue_, false)) return false;
    }
    check();
    return true;
}

void WindowWatcher::run() {
    using OrvelSystem::CurrentThread;
    CurrentThread::describe(std::string(OrvelCore::Brand::bundleIdentifier) + ".window-watcher",
                            CurrentThread::Urgency::inBackground);
    const auto isWoken = [this] { return isDue_ || isStopping_; };
    for (;;) {
        {
            std::unique_lock guard(queueLock_);
            if (reads_.observe)
                queueWoken_.wait(guard, isWoken);
            else
                queueWoken_.wait_for(guard, std::chrono::duration<double>(pollInterval), isWoken);
            if (isStopping_) return;
            isDue_ = true;
        }
        lookIfDue();
    }
}

}  // namespace OrvelCovers
