#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelCovers/BadgePresenting.h"

namespace OrvelCovers {

/// Shows the badges as panels, one for each locked app. Despite its name it is portable and does
/// not use AppKit. Main thread only.
class AppKitBadgePresenter final : public BadgePresenting {
  public:
    struct System {
        /// Makes a panel, ordered out, that can take the keyboard and has the backdrop of a cover.
        std::function<std::unique_ptr<OrvelBlur::OverlayPanel>(const OrvelCore::Rect& frame,
                                                               int level)>
            makePanel;
        /// Makes the view of a badge. `onTap` and `onCancel` may replace that view.
        std::function<std::shared_ptr<OrvelBlur::PanelContent>(
            std::shared_ptr<OrvelUI::LockCardModel> model, bool unlocking,
            std::function<void()> onTap, std::function<void()> onCancel)>
            makeContent;
        /// The main display without bars and docks, in window-server coordinates; empty without
        /// displays. A badge without a window is placed there.
        std::function<OrvelCore::Rect()> visibleFrame;
        /// Window-server units per point of the badge, which is larger on a dense display.
        std::function<double()> scale;
        /// Whether `window` is now anywhere above `other`. True if one of them does not exist.
        std::function<bool(OrvelCore::WindowID window, OrvelCore::WindowID other)> isAbove;

        static System live();
    };

    explicit AppKitBadgePresenter(System system);
    ~AppKitBadgePresenter() override;

    std::function<void(std::int64_t pid)> onRequestUnlock = [](std::int64_t) {};
    std::function<void(std::int64_t pid)> onCancelUnlock = [](std::int64_t) {};

    void show(std::int64_t pid, std::shared_ptr<OrvelUI::LockCardModel> model) override;
    void place(std::int64_t pid, const OrvelCore::Rect& over,
               std::optional<OrvelCore::WindowID> above) override;
    void drawInFront(std::int64_t pid, const std::vector<OrvelCore::WindowID>& windows) override;
    void hide(std::int64_t pid) override;
    void setUnlocking(std::int64_t pid, bool unlocking) override;
    bool takeKeyboard(std::int64_t pid) override;
    bool holdsKeyboard(std::int64_t pid) const override;
    void remove(std::int64_t pid) override;

  private:
    struct Badge {
        std::unique_ptr<OrvelBlur::OverlayPanel> panel;
        std::shared_ptr<OrvelUI::LockCardModel> model;
        bool unlocking = false;
        std::optional<OrvelCore::Rect> windowRect;
        std::optional<OrvelCore::WindowID> cover;
        std::vector<OrvelCore::WindowID> inFront;
    };

    Badge* find(std::int64_t pid);
    void render(std::int64_t pid, Badge& badge);
    void layOut(Badge& badge) const;
    void keyChanged(std::int64_t pid);

    System system_;
    std::map<std::int64_t, Badge> badges_;
    OrvelCore::Lifetime lifetime_;
};

/// The frame of a badge in the middle of `over`, both in window-server coordinates, with a
/// whole-numbered origin. `scale` is in window-server units per point.
OrvelCore::Rect badgeFrame(const OrvelCore::Rect& over, bool unlocking, double scale = 1);

}  // namespace OrvelCovers
