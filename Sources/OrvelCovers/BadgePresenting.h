#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelCovers {

/// The badge is a small card that each locked app shows over its blur. Calls for an app without a
/// badge do nothing or return false. Main thread only.
class BadgePresenting {
  public:
    BadgePresenting() = default;
    BadgePresenting(const BadgePresenting&) = delete;
    BadgePresenting& operator=(const BadgePresenting&) = delete;
    virtual ~BadgePresenting() = default;

    /// Makes a badge, which stays hidden until it is placed.
    virtual void show(std::int64_t pid, std::shared_ptr<OrvelUI::LockCardModel> model) = 0;
    /// Shows the badge in the middle of `over` (window-server coordinates), directly above the
    /// cover with the window number `above`; `nullopt` keeps its place in the stacking order.
    virtual void place(std::int64_t pid, const OrvelCore::Rect& over,
                       std::optional<OrvelCore::WindowID> above) = 0;
    /// Draws these windows onto the badge while it is closed, where the window server draws the
    /// badge in front of them. Frontmost first.
    virtual void drawInFront(std::int64_t /*pid*/,
                             const std::vector<OrvelCore::WindowID>& /*windows*/) {}
    virtual void hide(std::int64_t pid) = 0;
    /// Opens the badge into the card that takes the password, or closes it.
    virtual void setUnlocking(std::int64_t pid, bool unlocking) = 0;
    /// Returns whether the badge has the keyboard now.
    virtual bool takeKeyboard(std::int64_t pid) = 0;
    virtual bool holdsKeyboard(std::int64_t pid) const = 0;
    virtual void remove(std::int64_t pid) = 0;
};

}  // namespace OrvelCovers
