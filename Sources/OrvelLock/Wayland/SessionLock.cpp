#include "OrvelLock/Wayland/SessionLock.h"

#include <algorithm>
#include <utility>

#include <ext-session-lock-v1.h>

namespace OrvelLock {

using OrvelSystem::Compositor;

SessionLockSurface::SessionLockSurface(SessionLock& lock, QScreen& screen,
                                       const OrvelCore::Color& color)
    : lock_(lock), screen_(screen), window_(color) {
    window_.onKey = [this](QKeyEvent& event) {
        if (!takesKeys) lock_.deliver(event);
    };
    lock_.surfaces_.push_back(this);
    if (lock_.lock_ != nullptr) attach(lock_.lock_);
}

SessionLockSurface::~SessionLockSurface() {
    std::erase(lock_.surfaces_, this);
    detach();
}

void SessionLockSurface::attach(ext_session_lock_v1* lock) {
    auto* const output = Compositor::output(screen_);
    if (output == nullptr) return;
    window_.setScreen(&screen_);
    auto* const surface = Compositor::showWithoutRole(window_);
    if (surface == nullptr) return;
    role_ = ext_session_lock_v1_get_lock_surface(lock, surface, output);
    static constexpr ext_session_lock_surface_v1_listener listener{
        .configure = [](void* data, ext_session_lock_surface_v1* role, std::uint32_t serial,
                        std::uint32_t width, std::uint32_t height) {
            ext_session_lock_surface_v1_ack_configure(role, serial);
            static_cast<SessionLockSurface*>(data)->window_.fill(
                QSize(static_cast<int>(width), static_cast<int>(height)));
        }};
    ext_session_lock_surface_v1_add_listener(role_, &listener, this);
}

// Destroys the role first: hiding the window while its surface has the role is a fatal error.
void SessionLockSurface::detach() {
    if (role_ == nullptr) return;
    window_.stopDrawing();
    ext_session_lock_surface_v1_destroy(std::exchange(role_, nullptr));
    window_.hide();
}

SessionLock::~SessionLock() {
    // A program that ends must leave the session locked, so this does not unlock.
    if (lock_ != nullptr) wl_proxy_destroy(reinterpret_cast<wl_proxy*>(lock_));
}

void SessionLock::request() {
    unlocksWhenLocked_ = false;
    if (lock_ != nullptr) return;
    static constexpr ext_session_lock_v1_listener listener{
        .locked = [](void* data,
                     ext_session_lock_v1*) { static_cast<SessionLock*>(data)->locked(); },
        .finished = [](void* data,
                       ext_session_lock_v1*) { static_cast<SessionLock*>(data)->finished(); }};
    lock_ = ext_session_lock_manager_v1_lock(compositor_.sessionLock);
    ext_session_lock_v1_add_listener(lock_, &listener, this);
    // The compositor can hide the desktop while the surfaces are being made.
    compositor_.flush();
    for (auto* const surface : surfaces_) {
        surface->detach();
        surface->attach(lock_);
    }
}

void SessionLock::unlock() {
    if (lock_ == nullptr) return;
    if (!isLocked_) {
        // The protocol does not permit to unlock before the lock is granted.
        unlocksWhenLocked_ = true;
        return;
    }
    isLocked_ = unlocksWhenLocked_ = false;
    ext_session_lock_v1_unlock_and_destroy(std::exchange(lock_, nullptr));
    compositor_.waitForRequests();
}

void SessionLock::locked() {
    isLocked_ = true;
    isRefused_ = false;
    if (unlocksWhenLocked_) unlock();
    onChanged();
}

void SessionLock::finished() {
    for (auto* const surface : surfaces_) surface->detach();
    auto* const lock = std::exchange(lock_, nullptr);
    const bool wasLocked = std::exchange(isLocked_, false);
    if (wasLocked)
        ext_session_lock_v1_unlock_and_destroy(lock);
    else
        ext_session_lock_v1_destroy(lock);
    unlocksWhenLocked_ = false;
    // A report of every refusal would lead to the next request at once.
    if (!std::exchange(isRefused_, true) || wasLocked) onChanged();
}

void SessionLock::deliver(QKeyEvent& event) {
    const auto card = std::ranges::find_if(
        surfaces_, [](const SessionLockSurface* surface) { return surface->takesKeys; });
    if (card != surfaces_.end()) (*card)->window_.deliver(event);
}

}  // namespace OrvelLock
