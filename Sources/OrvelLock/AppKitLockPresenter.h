#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/WeakList.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelLock/LockPresenting.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelLock {

/// Presents the screen lock: one cover per display, and the card on exactly one of them. It keeps
/// the keyboard focus on the card and leaves every decision to the session. Despite its name it is
/// portable and does not use AppKit. Main thread only.
class AppKitLockPresenter final : public LockPresenting {
  public:
    /// `clock` is the session's monotonic clock, in seconds; `model` must outlive the presenter.
    AppKitLockPresenter(OrvelUI::LockCardModel& model, std::function<double()> clock,
                        LockPresenterSystem system);
    ~AppKitLockPresenter() override;

    void cover() override;
    void uncover() override;
    void showVerifying() override;
    void showWrongPassword() override;
    void showCooldown(double until) override;
    void showPasswordsPaused() override;
    void showReady() override;
    void showUnavailable() override;
    void reconcileScreens() override;
    void tickWithin(double seconds) override;

    /// Ticks now. Call it when the machine wakes up, because timers do not count the time of a
    /// suspension. Does nothing while the screen is not covered.
    void catchUp();

    /// Call it once at rest, so that the first cover is as fast as the later ones. Does nothing
    /// while a lock or a preview is up.
    void rehearse();

    /// Shows the lock for `seconds` without taking any input. Does nothing while a lock or another
    /// preview is up.
    void preview(double seconds);
    bool isPreviewing() const { return isPreviewing_; }

    /// Called when the card has lost the keyboard and steps to get it back were taken; once per
    /// burst of losses.
    std::function<void()> onFocusLost = [] {};
    /// Called when the keyboard is not back 0.25 seconds after those steps.
    std::function<void()> onReclaimFailed = [] {};
    std::function<void()> onBiometricAccepted = [] {};
    /// Called while the screen is covered: twice a second, or more rarely if the session has
    /// allowed it with `tickWithin`.
    std::function<void()> onTick = [] {};
    /// Called with true after covering and with false after uncovering; not called for a preview.
    std::function<void(bool)> onCoverChanged = [](bool) {};
    /// Read at each cover and preview; displays that are added later get the same look.
    std::function<OrvelCore::OverlayLook()> look = [] {
        return OrvelCore::OverlayLook::standardLock;
    };
    /// Makes the next `cover` skip its fade; that call resets it.
    bool instantNextCover = false;

  private:
    double fade(double seconds) const;
    /// Resets the card and reads the look, the displays and the card's display for a cover or a
    /// preview. Returns the displays.
    std::vector<DisplayInfo> prepare();
    void remember(const std::vector<DisplayInfo>& displays);
    void addSurface(const DisplayInfo& display, double duration);
    LockSurfaceContent content(std::uint32_t display);
    LockSurface* cardSurface() const;
    void takeDown(double duration);
    void endPreview();

    void focusCard();
    void reclaimFocus();
    void checkReclaim();
    void startObserving();
    void keyChanged(OrvelCore::WindowID window);

    void tick();
    void scheduleTick();

    void startBiometrics();
    void stopBiometrics();
    void promptBiometrics();
    void biometricsEnded(const OrvelAuth::BiometricResult& result);

    OrvelUI::LockCardModel& model_;
    std::function<double()> clock_;
    LockPresenterSystem system_;
    OrvelCore::OverlayLook currentLook_ = OrvelCore::OverlayLook::standardLock;
    std::map<std::uint32_t, std::unique_ptr<LockSurface>> surfaces_;
    /// Surfaces that are fading out. A cover during the fade builds new ones beside them.
    std::vector<std::unique_ptr<LockSurface>> fading_;
    std::optional<std::uint32_t> cardDisplay_;
    std::map<std::uint32_t, OrvelUI::NotchMetrics> notches_;
    OrvelCore::Subscription observers_;
    OrvelSystem::Timer tickTimer_;
    std::optional<double> nextTick_;  // seconds of the clock; set while the screen is covered
    double ticksWithin_ = 0;
    /// The check that follows a burst of losses; empty when none is due.
    std::optional<OrvelSystem::Timer> pendingReclaim_;
    /// The delay before the next prompt, or between setting a context and prompting with it.
    OrvelSystem::Timer biometricPause_;
    OrvelSystem::Cancellation biometricTask_;
    bool isPreviewing_ = false;
    OrvelSystem::Timer previewEnd_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelLock
