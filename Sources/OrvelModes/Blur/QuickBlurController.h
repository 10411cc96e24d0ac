#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/URLCommand.h"
#include "OrvelModes/Blur/QuickBlurSystem.h"

namespace OrvelModes {

/// Blurs every display, above all windows, until the user reveals it. Needs no password. Main
/// thread only.
class QuickBlurController {
  public:
    /// Seconds; not used with reduced motion.
    static constexpr double fade = 0.16;

    explicit QuickBlurController(QuickBlurSystem system);

    std::function<void(bool isBlurred)> onChange = [](bool) {};

    bool isBlurred() const { return isBlurred_; }
    void toggle();
    void blur();
    void reveal();
    void apply(OrvelCore::URLCommands::Switch change);
    /// Call after the displays have changed.
    void screensChanged();
    /// Call when the screen lock has ended: only then may the keyboard be taken or the front app
    /// restored.
    void lockEnded();

  private:
    void cover(double duration, bool takeKeyboard);
    void uncover(double duration);
    double fadeDuration() const { return system_.reduceMotion() ? 0 : fade; }

    bool isBlurred_ = false;
    QuickBlurSystem system_;
    std::vector<std::unique_ptr<ModeSurface>> surfaces_;  // one for each display
    ModeSurface* keyboardSurface_ = nullptr;  // one of `surfaces_`; null while nothing is blurred
    /// The app to activate after the reveal.
    std::optional<std::int64_t> previousApp_;
    /// The same app, if it must not be activated before a lock ends.
    std::optional<std::int64_t> pendingHandBack_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
