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

/// Blurs every display over everything until the user reveals it. Needs no password. Main thread
/// only.
class QuickBlurController {
  public:
    /// Seconds; none with reduced motion.
    static constexpr double fade = 0.16;

    explicit QuickBlurController(QuickBlurSystem system);

    std::function<void(bool isBlurred)> onChange = [](bool) {};

    bool isBlurred() const { return isBlurred_; }
    void toggle();
    void blur();
    void reveal();
    void apply(OrvelCore::URLCommands::Switch change);
    /// The displays are no longer where they were.
    void screensChanged();
    /// The whole-Mac lock is gone, and with it the reason to leave keyboard and front app alone.
    void lockEnded();

  private:
    void cover(double duration, bool takeKeyboard);
    void uncover(double duration);
    double fadeDuration() const { return system_.reduceMotion() ? 0 : fade; }

    bool isBlurred_ = false;
    QuickBlurSystem system_;
    std::vector<std::unique_ptr<ModeSurface>> surfaces_;  // one for each display
    ModeSurface* keyboardSurface_ = nullptr;              // one of them
    /// To give the front back to.
    std::optional<std::int64_t> previousApp_;
    /// The same, where that has to wait for the end of a lock.
    std::optional<std::int64_t> pendingHandBack_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
