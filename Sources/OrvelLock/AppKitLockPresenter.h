#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/Lifetime.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelLock/LockPresenting.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelLock {

/// What the user sees of the whole-Mac lock: one cover per display and the card on exactly one of
/// them. It defends the keyboard and leaves every decision about it to the session. Main thread
/// only.
class AppKitLockPresenter final : public LockPresenting {
  public:
    /// `clock` is the session's monotonic clock, in seconds; `model` outlives the presenter.
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

    /// Shows the lock for that long without taking any input. Nothing while a lock or another
    /// preview is up.
    void preview(double seconds);
    bool isPreviewing() const { return isPreviewing_; }

    /// The card lost the keyboard and steps were taken to get it back. A burst counts once.
    std::function<void()> onFocusLost = [] {};
    /// The keyboard was not back a quarter of a second after those steps.
    std::function<void()> onReclaimFailed = [] {};
    std::function<void()> onBiometricAccepted = [] {};
    /// Twice a second while covering.
    std::function<void()> onTick = [] {};
    /// True after covering, false after uncovering; a preview is neither.
    std::function<void(bool)> onCoverChanged = [](bool) {};
    /// Asked at each cover and preview, and kept for the covers that join it later.
    std::function<OrvelCore::OverlayLook()> look = [] {
        return OrvelCore::OverlayLook::standardLock;
    };
    /// Skips the fade of the next `cover`, which clears it.
    bool instantNextCover = false;

  private:
    double fade(double seconds) const;
    /// Reads what a cover or a preview starts from: card, look, displays, the card's display.
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
    void keyChanged(std::uint64_t window);

    void startTicking();

    void startBiometrics();
    void stopBiometrics();
    void promptBiometrics();
    void biometricsEnded(const OrvelAuth::BiometricResult& result);

    OrvelUI::LockCardModel& model_;
    std::function<double()> clock_;
    LockPresenterSystem system_;
    OrvelCore::OverlayLook currentLook_ = OrvelCore::OverlayLook::standardLock;
    std::map<std::uint32_t, std::unique_ptr<LockSurface>> surfaces_;
    /// On their way out; a cover that comes meanwhile builds new ones beside them.
    std::vector<std::unique_ptr<LockSurface>> fading_;
    std::optional<std::uint32_t> cardDisplay_;
    std::map<std::uint32_t, OrvelUI::NotchMetrics> notches_;
    OrvelCore::Observation observers_;
    OrvelSystem::Timer tickTimer_;
    /// The one check that follows a burst of losses.
    std::optional<OrvelSystem::Timer> pendingReclaim_;
    /// The pause before the next prompt, or before the view has picked its context up.
    OrvelSystem::Timer biometricPause_;
    OrvelSystem::Cancellation biometricTask_;
    bool isPreviewing_ = false;
    OrvelSystem::Timer previewEnd_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelLock
