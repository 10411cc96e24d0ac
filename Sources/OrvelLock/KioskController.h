#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelLock/KioskControlling.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelLock {

/// A running app, with what is needed to bring it back to the front.
struct AppHandle {
    std::int64_t pid = 0;
    /// The number of the window that had the focus; 0 where apps are activated by process.
    OrvelCore::WindowID window = 0;
    bool operator==(const AppHandle&) const = default;
};

struct KioskSystem {
    OrvelSystem::MainLoop& loop;
    std::int64_t ownPID;
    /// The app in front; `nullopt` when there is none.
    std::function<std::optional<AppHandle>()> frontmostApp = {};
    /// `setRegular` makes this an ordinary app, which may come to the front; `setAccessory` makes
    /// it an agent again.
    std::function<void()> setRegular = {};
    std::function<void()> setAccessory = {};
    std::function<void()> activate = {};
    /// Returns whether this app is active. Where that means holding the keyboard, each call also
    /// takes the next step towards holding it.
    std::function<bool()> tryActivate = {};
    /// Seconds after which `engage` gives up.
    double activationTimeout = 0.25;
    /// Takes `KioskController::options` to restrict the desktop, or 0 to give everything back,
    /// including grabs.
    std::function<void(std::uint32_t)> setPresentationOptions = {};
    std::function<void(const AppHandle&)> activateApp = {};
    /// As in `KioskControlling`. `reassert` must not raise the covers while it lacks the keyboard:
    /// the user may be typing into the locker that holds it.
    std::function<void()> prepare = [] {};
    std::function<bool()> reassert = [] { return true; };
    std::function<void()> yield = [] {};
    std::function<bool()> isHeldBySystemLock = [] { return true; };
    std::function<bool()> reportsLosses = [] { return false; };
    /// Sets the function to call when the result of `reassert` or `isHeldBySystemLock` may have
    /// changed.
    std::function<void(std::function<void()>)> observe = [](const auto&) {};

    static KioskSystem live(OrvelSystem::MainLoop& loop);
};

/// Makes the agent the one foreground app and blocks the ways out of it. A crash needs no cleanup,
/// because everything taken belongs to the process and ends with it.
class KioskController final : public KioskControlling {
  public:
    /// The `NSApplicationPresentationOptions` `hideDock`, `hideMenuBar`, `disableAppleMenu`,
    /// `disableProcessSwitching`, `disableForceQuit`, `disableSessionTermination` and
    /// `disableHideApplication`. Platforms without these block the equivalent ways out.
    static constexpr std::uint32_t options = 0x1FA;

    explicit KioskController(KioskSystem system);

    /// Takes up to `activationTimeout`. The controller must outlive the task.
    OrvelSystem::Task<bool> engage() override;
    void release(bool restoringFocus) override;
    void prepare() override;
    bool reassert() override;
    void yield() override;
    bool isHeldBySystemLock() override;
    bool reportsLosses() const override;

  private:
    KioskSystem system_;
    std::optional<AppHandle> previousApp_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelLock
