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

/// The surface of one output under a session's lock. Without a lock it shows nothing.
class SessionLockSurface {
  public:
    /// Shown with the lock of `lock`, now or when that is next asked for.
    SessionLockSurface(SessionLock& lock, QScreen& screen, const OrvelCore::Color& color);
    ~SessionLockSurface();
    SessionLockSurface(const SessionLockSurface&) = delete;
    SessionLockSurface& operator=(const SessionLockSurface&) = delete;

    OrvelBlur::FilledWindow& window() { return window_; }
    /// Keys that any of the surfaces gets are for this one's content: the compositor alone decides
    /// which surface has the keyboard.
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

/// The compositor's lock of the session. Once it is held, the compositor shows nothing but the
/// lock's surfaces and gives no input to anything else, also when this program ends without
/// unlocking. Main thread only.
class SessionLock {
  public:
    /// The compositor offers locks, and outlives this object.
    explicit SessionLock(OrvelSystem::Compositor& compositor) : compositor_(compositor) {}
    ~SessionLock();
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;

    /// Asks for the lock, and has sent that when it returns. Nothing while it is asked for or held.
    void request();
    /// Ends the lock, if it is held, and returns once the compositor has done so. A lock that is
    /// only asked for ends as soon as it is held.
    void unlock();

    const OrvelSystem::Compositor& compositor() const { return compositor_; }
    bool isHeld() const { return lock_ != nullptr && isLocked_; }
    /// Asked for and not refused, or held.
    bool isWanted() const { return lock_ != nullptr && !unlocksWhenLocked_; }
    /// Another program holds the lock.
    bool isRefused() const { return isRefused_; }

    /// `isHeld` or `isRefused` is another one.
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
