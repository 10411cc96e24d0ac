#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelBlur/BlurBackend.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelModes/Blur/ModeSurface.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// What `FocusBlurController` needs from the platform. Main thread only.
struct FocusBlurSystem {
    /// All windows, front-most first.
    std::function<std::vector<OrvelCore::WindowInfo>()> windows;
    /// The frames of the displays, in window-server coordinates.
    std::function<std::vector<OrvelCore::Rect>()> displays;
    /// Makes an overlay, ordered out, with the current look, at the level of ordinary windows. It
    /// passes all clicks through.
    std::function<std::unique_ptr<ModeSurface>()> makeSurface;
    std::int64_t ownPID = 0;
    std::function<bool()> reduceMotion;
    /// The process of the app in front; `nullopt` when there is none.
    std::function<std::optional<std::int64_t>()> frontPID;
    /// Whether overlays are drawn in front of all windows, whatever the stacking order is.
    std::function<bool()> drawsOverlaysInFront = [] { return false; };

    /// `look` is called whenever a surface is made.
    static FocusBlurSystem live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                std::int64_t ownPID, std::function<OrvelCore::OverlayLook()> look);
};

}  // namespace OrvelModes
