#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/TriggerSettings.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// An invisible panel of one pixel that detects the pointer. Destroying it removes it from the
/// screen.
class CornerPanel {
  public:
    CornerPanel() = default;
    CornerPanel(const CornerPanel&) = delete;
    CornerPanel& operator=(const CornerPanel&) = delete;
    virtual ~CornerPanel() = default;

    std::function<void()> onEnter = [] {};
    std::function<void()> onExit = [] {};
    /// Moves the panel to `rect`, in window-server coordinates, and shows it.
    virtual void place(const OrvelCore::Rect& rect) = 0;
};

/// Fires when the pointer has stayed in the chosen corner of any display for the dwell time, once
/// for each visit. Main thread only.
class HotCornerController {
  public:
    using Corner = OrvelCore::TriggerSettings::Corner;
    using Action = OrvelCore::TriggerSettings::CornerAction;

    /// `screens` returns the frames of the displays, in window-server coordinates.
    HotCornerController(OrvelSystem::MainLoop& loop,
                        std::function<std::unique_ptr<CornerPanel>()> makePanel,
                        std::function<std::vector<OrvelCore::Rect>()> screens);

    std::function<void(Action)> onFire = [](Action) {};

    /// `nullopt` means no corner. Call it again whenever the displays change.
    void configure(std::optional<Corner> corner, Action action);

  private:
    void entered();

    OrvelSystem::MainLoop& loop_;
    std::function<std::unique_ptr<CornerPanel>()> makePanel_;
    std::function<std::vector<OrvelCore::Rect>()> screens_;
    std::vector<std::unique_ptr<CornerPanel>> panels_;
    Action action_ = Action::lock;
    int visit_ = 0;
    bool inside_ = false;
    OrvelCore::Lifetime lifetime_;
};

/// Makes the platform's panel.
std::unique_ptr<CornerPanel> makeLiveCornerPanel();

}  // namespace OrvelModes
