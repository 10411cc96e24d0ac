#pragma once

#include <QSize>
#include <functional>
#include <vector>

#include "OrvelBlur/Wayland/FilledWindow.h"
#include "OrvelSystem/Wayland/Compositor.h"

struct ext_session_lock_v1;
struct ext_session_lock_surface_v1;

namespace OrvelLock {

class SessionLock;

/// The surface of one output in a lock of the session. Without a lock it shows nothing.
class SessionLockSurface {
  public:
    /// Is shown with the lock of `lock`, at once or at the next request. The arguments must outlive
    /// it.
    SessionLockSurface(SessionLock& lock, QScreen& screen, const OrvelCore::Color& color);
    ~SessionLockSurface();
    SessionLockSurface(const SessionLockSurface&) = delete;
    SessionLockSurface& operator=(const SessionLockSurface&) = delete;

    OrvelBlur::FilledWindow& window() { return window_; }
    /// Whether this content receives the keys of all surfaces. The compositor decides which surface
    /// has the keyboard.
    bool takesKeys = false;

  private:
    friend class SessionLock;
    void attach(ext_session_lock_v1* lock);
    void detach();

    SessionLock& lock_;
    QScreen& screen_;
    OrvelBlur::FilledWindow window_;
    ext_session_lock_surface_v1* role_ = nullptr;
};

/// The compositor's lock of the session. While it is held, the compositor shows only the surfaces
/// of the lock and sends input only to them, even after this program has ended without unlocking.
/// Main thread only.
class SessionLock {
  public:
    /// `compositor` must offer session locks and outlive this object.
    explicit SessionLock(OrvelSystem::Compositor& compositor) : compositor_(compositor) {}
    ~SessionLock();
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;

    /// Sends the request for the lock before it returns. Does nothing if the lock is requested or
    /// held.
    void request();
    /// Ends the lock, if it is held, and returns once the compositor has done so. A lock that is
    /// only requested ends as soon as it is granted.
    void unlock();

    const OrvelSystem::Compositor& compositor() const { return compositor_; }
    bool isHeld() const { return lock_ != nullptr && isLocked_; }
    /// Whether the lock is held, or requested and not refused.
    bool isWanted() const { return lock_ != nullptr && !unlocksWhenLocked_; }
    /// Whether another program holds the lock.
    bool isRefused() const { return isRefused_; }

    /// Called after `isHeld` or `isRefused` has changed.
    std::function<void()> onChanged = [] {};

  private:
    friend class SessionLockSurface;
    void locked();
    void finished();
    void deliver(QKeyEvent& event);

    OrvelSystem::Compositor& compositor_;
    ext_session_lock_v1* lock_ = nullptr;
    bool isLocked_ = false;
    bool isRefused_ = false;
    bool unlocksWhenLocked_ = false;
    std::vector<SessionLockSurface*> surfaces_;
};

}  // namespace OrvelLock
