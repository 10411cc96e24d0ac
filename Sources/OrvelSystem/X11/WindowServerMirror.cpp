#include "OrvelSystem/X11/WindowServerMirror.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "OrvelSystem/Uptime.h"
#include "OrvelSystem/X11/MirrorConnection.h"

namespace OrvelSystem {

namespace {

/// The thread ends after this many seconds without a read or an observer.
constexpr double lingering = 10;

}  // namespace

WindowServerMirror& WindowServerMirror::shared() {
    static WindowServerMirror mirror;
    return mirror;
}

WindowServerMirror::WindowServerMirror() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WindowServerMirror::~WindowServerMirror() {
    {
        const std::lock_guard guard(lock_);
        isStopping_ = true;
    }
    eventfd_write(wake_, 1);
    if (thread_.joinable()) thread_.join();
    close(wake_);
}

template <class Read>
auto WindowServerMirror::read(Read read) {
    const std::lock_guard guard(lock_);
    ensureRunning();
    lastUse_ = uptime();
    return read(std::as_const(screen_));
}

std::vector<OrvelCore::WindowInfo> WindowServerMirror::windows() {
    return read([](const ScreenState& screen) { return screen.windows; });
}

std::vector<OrvelCore::WindowID> WindowServerMirror::numbers() {
    return read([](const ScreenState& screen) {
        std::vector<OrvelCore::WindowID> numbers;
        numbers.reserve(screen.windows.size());
        for (const auto& window : screen.windows) numbers.push_back(window.number);
        return numbers;
    });
}

std::map<OrvelCore::WindowID, OrvelCore::Rect> WindowServerMirror::bounds(
    const std::vector<OrvelCore::WindowID>& numbers) {
    const std::set<OrvelCore::WindowID> wanted(numbers.begin(), numbers.end());
    return read([&](const ScreenState& screen) {
        std::map<OrvelCore::WindowID, OrvelCore::Rect> bounds;
        for (const auto& window : screen.windows) {
            if (wanted.contains(window.number)) bounds.emplace(window.number, window.bounds);
        }
        return bounds;
    });
}

ScreenState::Inputs WindowServerMirror::inputs() {
    return read([](const ScreenState& screen) { return screen.inputs; });
}

OrvelCore::Subscription WindowServerMirror::observe(std::function<void()> changed) {
    auto observer = std::make_shared<Observer>();
    observer->changed = std::move(changed);
    const std::lock_guard guard(lock_);
    observers_.push_back(observer);
    ensureRunning();
    // The thread may be waiting with the timeout that applies without observers.
    eventfd_write(wake_, 1);
    return {observer.get(), [this, observer](void*) {
                {
                    const std::lock_guard gone(observer->lock);
                    observer->changed = nullptr;
                }
                const std::lock_guard list(lock_);
                std::erase(observers_, observer);
                lastUse_ = uptime();
                eventfd_write(wake_, 1);
            }};
}

void WindowServerMirror::ensureRunning() {
    if (isRunning_ || isStopping_) return;
    if (thread_.joinable()) thread_.join();
    auto connection = std::make_unique<MirrorConnection>(levelProperty);
    screen_ = connection->screen();
    if (!connection->isAlive()) return;
    isRunning_ = true;
    thread_ =
        std::thread([this, owned = std::move(connection)]() mutable { run(std::move(owned)); });
}

void WindowServerMirror::run(std::unique_ptr<MirrorConnection> connection) {
    for (;;) {
        const bool changed = connection->handleEvents();
        std::vector<std::shared_ptr<Observer>> told;
        int timeout = -1;
        {
            const std::lock_guard guard(lock_);
            const double left = lastUse_ + lingering - uptime();
            if (isStopping_ || !connection->isAlive() || (observers_.empty() && left <= 0)) {
                screen_ = {};
                isRunning_ = false;
                return;
            }
            if (observers_.empty()) timeout = static_cast<int>(std::ceil(left * 1000));
            if (changed) {
                screen_ = connection->screen();
                told = observers_;
            }
        }
        for (const auto& observer : told) {
            const std::lock_guard guard(observer->lock);
            if (observer->changed) observer->changed();
        }
        if (connection->mayHaveMore()) continue;
        pollfd polled[2] = {{connection->descriptor(), POLLIN, 0}, {wake_, POLLIN, 0}};
        poll(polled, 2, timeout);
        eventfd_t value = 0;
        eventfd_read(wake_, &value);
    }
}

}  // namespace OrvelSystem
