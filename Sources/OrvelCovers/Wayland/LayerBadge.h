#pragma once

#include <memory>
#include <optional>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/Wayland/FilledWindow.h"
#include "OrvelBlur/Wayland/LayerSurface.h"
#include "OrvelCovers/AppKitBadgePresenter.h"
#include "OrvelSystem/Wayland/Compositor.h"
#include "OrvelSystem/Wayland/Outputs.h"

namespace OrvelCovers {

/// The badge of an app whose windows are hidden: it is shown only as the open card, which has the
/// keyboard from then on. `System::makeContent` returns null for the closed badge.
class LayerBadge final : public OrvelBlur::OverlayPanel {
  public:
    /// Both must outlive the badge.
    LayerBadge(const OrvelSystem::Compositor& compositor, OrvelSystem::Outputs& outputs)
        : compositor_(compositor), outputs_(outputs) {}
    ~LayerBadge() override { close(); }

    OrvelCore::Rect frame() const override { return frame_; }
    void setFrame(const OrvelCore::Rect& frame) override { frame_ = frame; }
    int level() const override { return OrvelBlur::WindowLevel::normal; }
    void setCollectionBehavior(std::uint32_t) override {}
    OrvelCore::WindowID windowNumber() const override { return -1; }
    bool owns(OrvelCore::WindowID) const override { return false; }
    bool ignoresMouseEvents() const override { return false; }
    void setIgnoresMouseEvents(bool) override {}
    void setBackdrop(const Backdrop&) override {}
    bool setRadius(int) override { return false; }
    void setTint(const OrvelCore::Color&) override {}
    void setCornerRadius(double) override {}
    void setOpenings(const std::vector<OrvelCore::Rect>&) override {}
    void setOpacity(Layer, double) override {}
    void setContent(std::shared_ptr<OrvelBlur::PanelContent> content) override;
    void display() override {}
    bool isVisible() const override { return surface_.has_value(); }
    /// A badge without the keyboard is not shown.
    void orderFrontRegardless() override {}
    void orderOut() override { close(); }
    void orderAbove(OrvelCore::WindowID) override {}
    void orderBelow(OrvelCore::WindowID) override {}
    void makeKeyAndOrderFront() override;
    bool isKeyWindow() const override { return isVisible(); }

  private:
    void close();

    const OrvelSystem::Compositor& compositor_;
    OrvelSystem::Outputs& outputs_;
    OrvelCore::Rect frame_;
    std::shared_ptr<const OrvelBlur::QtPanelContent> content_;
    std::unique_ptr<OrvelBlur::FilledWindow> window_;
    std::optional<OrvelBlur::LayerSurface> surface_;
};

/// Both arguments must outlive the result.
AppKitBadgePresenter::System layerBadges(const OrvelSystem::Compositor& compositor,
                                         OrvelSystem::Outputs& outputs);

}  // namespace OrvelCovers
