#pragma once

#include <functional>
#include <memory>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/WeakList.h"
#include "OrvelModes/Windows/AppWindow.h"
#include "OrvelUI/OnboardingModel.h"

namespace OrvelModes {

struct OnboardingWindowSystem {
    /// Makes a window that shows the model. It is not on the screen yet.
    std::function<std::unique_ptr<AppWindow>(OrvelUI::OnboardingModel&)> makeWindow;
    /// Makes this the app in front.
    std::function<void()> activate;
    std::function<bool()> isActive;
    /// Calls `activated` each time this becomes the app in front, until the token is destroyed.
    std::function<OrvelCore::Subscription(std::function<void()> activated)> observeActivation;

    static OnboardingWindowSystem live();
};

/// Controls the window of the first-run guide. Main thread only.
class OnboardingWindowController {
  public:
    explicit OnboardingWindowController(OnboardingWindowSystem system)
        : system_(std::move(system)) {}

    OrvelUI::OnboardingModel model;
    /// Called when the user has closed the guide before its end. May destroy this object.
    std::function<void()> onClosedEarly = [] {};

    void show();
    /// Brings the guide to the front again, unless it was closed.
    void bringBack();
    /// Closes the guide when it has been completed.
    void finish();
    /// Keeps a window above other apps until the system lets this app come to the front.
    void floatUntilActive(AppWindow& window, bool appIsActive);

  private:
    void prepare();

    OnboardingWindowSystem system_;
    std::unique_ptr<AppWindow> window_;
    bool finished_ = false;
    OrvelCore::Subscription activeObserver_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
